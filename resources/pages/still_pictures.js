// Runs in the program's own world in every frame of a page in which nothing is to move, for engines that cannot keep
// pictures from moving: each that does so is replaced by one frame of it.
(() => {
  const knownNames = /\.(gif|apng|png|webp|avif|svg)$/i;
  const stillNames = /\.(jpe?g|jpe|jfif|bmp|ico)$/i;
  // Nothing is fetched anew only to know this: the engine has it, or else its name has to do. Of one whose name says
  // nothing it is not known, and one frame in its place looks the same if it was still.
  const look = async address => {
    if (/^data:image\/(jpeg|bmp)/.test(address)) return false;
    const isOwn = /^(data|blob):/.test(address);
    const {pathname, origin} = new URL(address);
    if (!isOwn && stillNames.test(pathname)) return false;
    const [, name = ''] = isOwn ? [] : pathname.toLowerCase().match(knownNames) || [];
    if (name === 'gif') return true;
    let text;
    try {
      const kept = isOwn ? {} : origin === location.origin ? {mode: 'same-origin', cache: 'only-if-cached'} :
                                                             {mode: 'cors', cache: 'force-cache'};
      text = new TextDecoder('latin1').decode(await (await fetch(address, kept)).arrayBuffer());
    } catch {
      if (isOwn) return address.startsWith('data:image/gif');
      return name === '' ? 'perhaps' : name === 'apng';
    }
    if (text.startsWith('GIF8')) return text.split('!\u00f9\u0004').length > 2;
    if (text.startsWith('PNG', 1)) return text.split('IDAT')[0].includes('acTL');
    if (text.startsWith('WEBPVP8X', 8)) return (text.charCodeAt(20) & 2) !== 0;
    if (text.startsWith('ftypavis', 4)) return true;
    return /<svg/.test(text) && /<(animate|set\b)|@keyframes/.test(text);
  };
  const looked = new Map();
  const moves = address => {
    // Not everything that stands where an address should is one.
    if (!looked.has(address)) looked.set(address, look(address).catch(() => false));
    return looked.get(address);
  };
  // Where no scripts may run, sandboxed frames included, the engine shows no canvas.
  const hasCanvas = () => {
    const place = document.createElement('div');
    try {
      place.innerHTML = '<noscript><p></p></noscript>';
    } catch {
      // A page with rules for its own scripts has some.
    }
    return place.querySelector('p') === null;
  };
  const draw = image => {
    const canvas = document.createElement('canvas');
    canvas.width = image.naturalWidth;
    canvas.height = image.naturalHeight;
    canvas.getContext('2d').drawImage(image, 0, 0);
    return canvas;
  };
  const load = async (address, isShared) => {
    const image = new Image();
    if (isShared) image.crossOrigin = 'anonymous';
    image.src = address;
    await image.decode();
    return image;
  };
  // The address of one frame, or nothing where the picture's site or the page's own rules do not let it be had.
  const frames = new Map();
  const made = new Set();
  const bytesOf = image => new Promise(done => draw(image).toBlob(done));
  const frameOf = (address, image) => {
    if (!frames.has(address)) frames.set(address, (async () => {
      try {
        const own = image && await bytesOf(image).catch(() => undefined);
        const frame = URL.createObjectURL(own || await bytesOf(await load(address, true)));
        made.add(frame);
        await load(frame, false);
        return frame;
      } catch {
        return undefined;
      }
    })());
    return frames.get(address);
  };
  const shown = new WeakMap();
  const show = async image => {
    const address = image.currentSrc;
    const {stand, source} = shown.get(image) || {};
    if (!address || source === address) return;
    if (source) image.style.removeProperty('content');
    if (stand) {
      stand.remove();
      image.style.removeProperty('display');
    }
    shown.delete(image);
    if (!await moves(address)) return;
    const frame = await frameOf(address, image);
    if (image.currentSrc !== address || shown.has(image)) return;
    if (frame) {
      image.style.setProperty('content', `url("${frame}")`, 'important');
      shown.set(image, {source: address});
      return;
    }
    // What may not be read may still be painted. Where it may not either, to move is better than not to show.
    if (!hasCanvas()) return;
    const {width, height} = image.getBoundingClientRect();
    // One that does not show yet has no size to take over, and is looked at again when its style changes.
    if (width === 0 || height === 0) return;
    const canvas = draw(image);
    canvas.className = image.className;
    canvas.style.cssText = image.style.cssText;
    canvas.style.width = `${width}px`;
    canvas.style.height = `${height}px`;
    canvas.setAttribute('role', 'img');
    canvas.setAttribute('aria-label', image.alt);
    image.after(canvas);
    image.style.setProperty('display', 'none', 'important');
    shown.set(image, {source: address, stand: canvas});
  };
  // These have but one address, which the frame's can stand for.
  const showSource = async element => {
    const source = element instanceof SVGImageElement ? element.href : element;
    const name = source === element ? 'src' : 'baseVal';
    const written = source[name];
    if (!written) return;
    const address = new URL(written, element.baseURI).href;
    if (made.has(address) || !await moves(address)) return;
    const frame = await frameOf(address);
    if (frame && source[name] === written) source[name] = frame;
  };
  const showPicture = element => {
    const isButton = element instanceof HTMLInputElement && element.type === 'image';
    if (element instanceof HTMLImageElement && element.complete) show(element);
    // What is no address at all is no picture either.
    if (element instanceof SVGImageElement || isButton) showSource(element).catch(() => {});
  };
  // What stands before and after an element has no style of its own to write to.
  const sheet = new CSSStyleSheet();
  const written = new Map();
  const mark = 'data-still';
  const write = (element, part, property, value) => {
    if (!part) return element.style.setProperty(property, value, 'important');
    const root = element.getRootNode();
    if (!element.isConnected) return;
    const key = part + property + value;
    if (!written.has(key)) {
      const name = String(written.size);
      written.set(key, name);
      sheet.insertRule(`[${mark}~="${name}"]${part} { ${property}: ${value} !important }`);
    }
    if (!root.adoptedStyleSheets.includes(sheet)) root.adoptedStyleSheets = [...root.adoptedStyleSheets, sheet];
    const marks = new Set((element.getAttribute(mark) || '').split(' ').filter(Boolean));
    element.setAttribute(mark, [...marks.add(written.get(key))].join(' '));
  };
  const properties = ['background-image', 'list-style-image', 'border-image-source', '-webkit-mask-image', 'content'];
  const showStyle = async (element, part) => {
    const style = getComputedStyle(element, part);
    if (part && /^(none|normal)$/.test(style.content)) return;
    for (const property of properties) {
      const value = style.getPropertyValue(property);
      let still = value;
      for (const [whole, address] of value.matchAll(/url\("([^"]*)"\)/g)) {
        const isMoving = !made.has(address) && await moves(address);
        if (!isMoving) continue;
        const frame = await frameOf(address);
        // Without its mask nothing of the element would show.
        if (!frame && (isMoving === 'perhaps' || property === '-webkit-mask-image')) continue;
        const nothing = property === 'content' ? '""' : 'linear-gradient(transparent, transparent)';
        still = still.replace(whole, frame ? `url("${frame}")` : nothing);
      }
      if (still !== value) write(element, part, property, still);
    }
  };
  const changed = new Set();
  const watched = new WeakSet();
  const showAll = () => {
    for (const element of changed) {
      showPicture(element);
      for (const part of [undefined, '::before', '::after']) showStyle(element, part);
      if (element.shadowRoot) watch(element.shadowRoot);
    }
    changed.clear();
  };
  const add = elements => {
    // Not by a timer, which does not run where the page's scripts may not.
    if (changed.size === 0) scheduler.postTask(showAll, {delay: 100});
    for (const element of elements) changed.add(element);
  };
  const addAll = root => add([...(root instanceof Element ? [root] : []), ...root.querySelectorAll('*')]);
  const watch = root => {
    if (watched.has(root)) return;
    watched.add(root);
    root.addEventListener('load', event => {
      showPicture(event.target);
      // A style sheet that came late.
      if (event.target instanceof HTMLLinkElement) addAll(root);
    }, true);
    new MutationObserver(changes => {
      for (const {type, target, addedNodes} of changes) {
        for (const node of type === 'attributes' ? [target] : addedNodes) {
          if (node instanceof Element) addAll(node);
        }
      }
    }).observe(root, {childList: true, subtree: true, attributes: true, attributeFilter: ['class', 'style']});
    addAll(root);
  };
  watch(document);
  document.addEventListener('DOMContentLoaded', () => addAll(document));
  // Elements that a script defines late get their trees without any change around them.
  addEventListener('load', () => addAll(document));
})();
