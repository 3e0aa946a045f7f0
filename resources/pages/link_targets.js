// Runs in the program's own world in every frame of the page and tells the program the name that a link or a form gives
// to where it opens, which the engine keeps to itself. What this world writes to the console arrives in one line with
// what the engine asks, so that a name is known before its navigation.
(() => {
  const tell = (kind, name) => console.debug('{{Token}}' + kind + name);
  const bases = document.getElementsByTagName('base');
  const base = () => {
    for (const element of bases) {
      // These two spellings are meant; the first is that of HTML, the second that of XHTML.
      if ((element.tagName === 'BASE' || element.tagName === 'base') && element.hasAttribute('target'))
        return element.getAttribute('target');
    }
    return '';
  };
  if (window.parent === window) {
    let told;
    const look = () => {
      const name = base();
      if (name !== told) tell('base:', told = name);
    };
    look();
    new MutationObserver(look).observe(
        document, {childList: true, subtree: true, attributes: true, attributeFilter: ['target']});
    for (const moment of ['DOMContentLoaded', 'load', 'click', 'submit']) addEventListener(moment, look, true);
  }
  const follow = name => {
    tell('open:', name);
    // What comes later is no longer this click's.
    setTimeout(() => tell('open:', ''));
  };
  const xlink = 'http://www.w3.org/1999/xlink';
  const isLink = node => (node.localName === 'a' || node.localName === 'area') &&
      (node.hasAttribute('href') || node.hasAttributeNS(xlink, 'href'));
  addEventListener('click', event => {
    const link = event.composedPath().find(isLink);
    if (!link) return;
    // With these keys the user says himself where it is to open.
    const isPlain = event.button === 0 && !event.ctrlKey && !event.metaKey && !event.shiftKey;
    follow(isPlain ? link.getAttribute('target') || base() : '');
  }, true);
  addEventListener('auxclick', () => tell('open:', ''), true);
  let submitter;
  addEventListener('submit', event => submitter = event.submitter, true);
  // Comes for forms that a script submits, too.
  addEventListener('formdata', event => {
    const form = event.target;
    // A form's fields may bear the names of what it can do.
    const valueOf = (element, name) => Reflect.apply(Element.prototype.getAttribute, element, [name]);
    const own = submitter && submitter.form === form && valueOf(submitter, 'formtarget');
    submitter = undefined;
    follow(own || valueOf(form, 'target') || base());
  }, true);
})();
