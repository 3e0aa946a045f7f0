// Looks for words in the text of a page, tells which are there, and marks them. Runs in a world of its own, of which the
// page sees nothing but the marks. What it has to tell it writes to the console, which only the program reads, behind a
// token that the page does not know.
(({words, marks, most, token}) => {
  const state = Symbol.for('word marks');
  if (globalThis[state]) globalThis[state]();
  delete globalThis[state];
  if (words.length === 0) return;

  const slice = 8;        // milliseconds at a time, so that a long page stays at hand
  const longest = 20000;  // characters of one text that are looked through
  const name = 'zvword';  // without a hyphen, so that no page gives it a life of its own
  const look = 'all:unset!important;cursor:pointer!important;text-decoration:underline dotted!important;' +
      'text-underline-offset:.2em!important';
  // What is no text of the page's, or the user's own.
  const closed = 'script,style,noscript,template,title,textarea,input,select,datalist,iframe,object,audio,video,canvas,' +
      'svg,math,[contenteditable]:not([contenteditable=false i]),details:not([open])>:not(summary)';
  // Text that does something already, or stands for itself letter by letter.
  const unmarked = 'a,area,button,summary,label,option,code,pre,kbd,samp,rt,rp,[onclick],[role=button],[role=link],' +
      '[role=tab],[role=option],[role=checkbox],[role=radio],[role=switch],[role^=menuitem],[role=textbox],' + name;
  const containers = /flex|grid|box/;  // where each text by itself is laid out as a part

  // An element with the name of a method hides it, in a document and in forms; prototypes cannot be hidden.
  const call = (method, self, ...parameters) => Reflect.apply(method, self, parameters);
  const matches = (element, selector) => call(Element.prototype.matches, element, selector);
  const closest = (element, selector) => call(Element.prototype.closest, element, selector);
  const isEditable = element =>
      call(Object.getOwnPropertyDescriptor(HTMLElement.prototype, 'isContentEditable').get, element);
  const listen = on => call(
      on ? EventTarget.prototype.addEventListener : EventTarget.prototype.removeEventListener, window, 'click', onClick,
      true);
  const tell = message => console.info(token + JSON.stringify(message));

  // A tree of the words' characters, blanks counted as one. The words are somebody else's: in a regular expression some
  // would take seconds to look for.
  const fold = text => {
    const lower = text.toLowerCase();
    return lower.length === text.length ?
        lower :
        text.replace(/./gsu, character => {
          const small = character.toLowerCase();
          return small.length === character.length ? small : character;
        });
  };
  const letter = /[\p{L}\p{N}\p{M}_]/u;
  // These are written without anything between words.
  const joined = /[\p{scx=Han}\p{scx=Hira}\p{scx=Kana}\p{scx=Thai}\p{scx=Laoo}\p{scx=Khmr}\p{scx=Mymr}]/u;
  const isEdge = character => letter.test(character) && !joined.test(character);
  const isBlank = character => character <= ' ' || character === '\u00a0';
  const root = {next: new Map()};
  let different = 0;
  words.forEach((word, number) => {
    const characters = [...word];
    let node = root;
    for (const unit of fold(word).split('')) {
      if (!node.next.has(unit)) node.next.set(unit, {next: new Map()});
      node = node.next.get(unit);
    }
    if (node.number !== undefined) return;
    ++different;
    Object.assign(node, {number, begins: isEdge(characters[0]), ends: isEdge(characters[characters.length - 1])});
  });
  const isPair = (text, i) => i > 0 && text[i] >= '\udc00' && text[i] <= '\udfff';
  const follows = (text, i) => i > 0 && letter.test(isPair(text, i - 1) ? text.slice(i - 2, i) : text[i - 1]);
  const precedes = (text, i) => i < text.length && letter.test(String.fromCodePoint(text.codePointAt(i)));
  // The longest word that begins there.
  const wordAt = (text, index) => {
    let node = root, i = index, word = null;
    while (i < text.length) {
      const blank = isBlank(text[i]);
      node = node.next.get(blank ? ' ' : text[i]);
      if (node === undefined) break;
      for (++i; blank && i < text.length && isBlank(text[i]);) ++i;
      if (node.number === undefined || (node.begins && follows(text, index)) || (node.ends && precedes(text, i))) continue;
      word = {index, length: i - index, number: node.number};
    }
    return word;
  };

  const found = new Set();
  const marked = new Map();  // mark: word
  const parts = new Map();   // text that was there: what was cut off it and stands behind it
  let isOver = false;

  // Takes the marks out of a text again. The text itself has stayed in its place, as the page knows it, and gets back what
  // was cut off. What the page has changed meanwhile is its own affair: a text that it has set anew is whole as it is, and
  // where it has changed what was cut off, or tidied away an empty beginning, only the marks go.
  const release = text => {
    const {head, whole, pieces} = parts.get(text);
    parts.delete(text);
    const isTidied = head === '' && text.parentNode !== pieces[0].node.parentNode;
    if (!isTidied && pieces.every(({node, content}) => node.textContent === content)) {
      for (const {node} of pieces) node.remove();
      if (text.data === head) text.appendData(whole.slice(head.length));
    } else {
      for (const {node} of pieces) if (marked.has(node)) node.replaceWith(...node.childNodes);
    }
    for (const {node} of pieces) marked.delete(node);
  };
  const watch = new MutationObserver(changes => {
    for (const {type, target, removedNodes} of changes) {
      for (const text of type === 'characterData' ? [target] : removedNodes) if (parts.has(text)) release(text);
    }
    watch.takeRecords();
  });

  const mark = ({text, hits}) => {
    const whole = text.data;
    const pieces = [];
    let rest = text, at = 0;
    for (const {index, length, number} of hits) {
      const word = rest.splitText(index - at);
      at = index + length;
      rest = at < whole.length ? word.splitText(length) : null;
      const element = call(Document.prototype.createElement, document, name);
      element.style.cssText = look;
      word.before(element);
      element.append(word);
      marked.set(element, number);
      pieces.push(element, ...(rest === null ? [] : [rest]));
    }
    const left = pieces.map(node => ({node, content: node.textContent}));
    parts.set(text, {head: text.data, whole, pieces: left});
    watch.observe(text, {characterData: true});
    watch.observe(text.parentNode, {childList: true});
    return pieces[pieces.length - 1];
  };

  const hitsOf = text => {
    const folded = fold(text.data.slice(0, longest));
    const hits = [];
    for (let i = 0; i < folded.length;) {
      const hit = wordAt(folded, i);
      if (hit !== null) hits.push(hit);
      i += hit === null ? 1 : hit.length;
    }
    return hits;
  };
  const place = call(Document.prototype.createRange, document);
  const isSeen = (text, style) => {
    place.selectNodeContents(text);
    return style.visibility === 'visible' && !matches(text.parentNode, 'details:not([open])') &&
        place.getClientRects().length > 0;
  };

  const walker = call(Document.prototype.createTreeWalker, document, document,
      NodeFilter.SHOW_ELEMENT | NodeFilter.SHOW_TEXT, node => {
        if (node instanceof Text) return NodeFilter.FILTER_ACCEPT;
        return marked.has(node) || matches(node, closed) ? NodeFilter.FILTER_REJECT : NodeFilter.FILTER_SKIP;
      });
  const isDone = () => found.size === different && (!marks || marked.size >= most);

  const step = () => {
    const end = performance.now() + slice;
    let text = walker.currentNode, left = marks ? most - marked.size : 0;
    const toMark = [];
    // Everything is looked at before anything is changed, since a page is laid out anew for the next look.
    while (performance.now() < end && !isDone() && (text = walker.nextNode()) !== null) {
      const parent = text.parentNode, hits = hitsOf(text);
      if (hits.length === 0 || !(parent instanceof HTMLElement) || isEditable(parent)) continue;
      const style = getComputedStyle(parent);
      if (!isSeen(text, style)) continue;
      for (const {number} of hits) found.add(number);
      if (left <= 0 || containers.test(style.display) || style.cursor === 'pointer' || closest(parent, unmarked)) continue;
      toMark.push({text, hits: hits.slice(0, left)});
      left -= hits.length;
    }
    let last = null;
    for (const one of toMark) last = {text: one.text, end: mark(one)};
    watch.takeRecords();
    // What is behind the last mark was looked at as well.
    if (last !== null && walker.currentNode === last.text) walker.currentNode = last.end;
    if (text !== null && !isDone()) {
      // Not by a timer, which does not run where the page's scripts may not.
      scheduler.postTask(() => isOver || step());
    } else {
      tell({found: [...found]});
    }
  };

  // A word that the user clicks. Clicks that a page makes up are none, and it hears nothing of the real one.
  const onClick = event => {
    if (!event.isTrusted || event.button !== 0 || event.altKey || event.ctrlKey || event.metaKey || event.shiftKey) return;
    const number = marked.get(event.target);
    if (number === undefined || !getSelection().isCollapsed) return;
    event.preventDefault();
    event.stopImmediatePropagation();
    const [box] = event.target.getClientRects();
    if (box) tell({clicked: number, x: box.left, y: box.bottom});
  };

  globalThis[state] = () => {
    isOver = true;
    listen(false);
    watch.disconnect();
    for (const text of [...parts.keys()]) release(text);
  };
  if (marks) listen(true);
  step();
})({{Options}});
