// Runs in the program's own world in every frame and tells the program what would be lost if the page went to sleep:
// what the user has put into its fields, what plays in it. The page's own frame is asked right before it would sleep;
// others cannot be asked, so they say it by themselves when it changes.
(() => {
  const frame = Math.random().toString(36).slice(2);
  const before = new Map();  // what the fields held that the user has changed since
  const isField = element => element instanceof HTMLInputElement || element instanceof HTMLTextAreaElement ||
      element instanceof HTMLSelectElement;
  const valueOf = field => {
    if (field.type === 'checkbox' || field.type === 'radio') return String(field.checked);
    if (field.type === 'file') return Array.from(field.files, file => file.name).join('/');
    return isField(field) ? field.value : field.innerHTML;
  };
  const targetOf = event => event.composedPath()[0];
  // What is typed into has hidden its fields in a tree of its own, and nobody can say what they hold: they count as
  // changed until they are sent.
  const hidden = Symbol();
  const contentOf = element => isField(element) || element.isContentEditable ? valueOf(element) : hidden;
  const isUnsaved = () => {
    for (const [field, value] of before) {
      if (field.isConnected && (value === hidden || valueOf(field) !== value)) return true;
    }
    return false;
  };
  const plays = root => {
    for (const media of root.querySelectorAll('audio, video')) {
      if (!media.paused && !media.ended) return true;
    }
    return false;
  };
  // Players like to hide in trees of their own, which are only looked through when there is time for it.
  const playsDeep = root => plays(root) ||
      Array.from(root.querySelectorAll('*')).some(element => element.shadowRoot && playsDeep(element.shadowRoot));
  const state = deep => (isUnsaved() ? 'u' : '') + ((deep ? playsDeep : plays)(document) ? 'p' : '') +
      (document.contentType === 'application/pdf' ? 'd' : '');
  let told = '';
  let again = 0;
  const tell = deep => {
    if (window.parent === window) return;
    const now = state(deep);
    if (now !== told) console.debug('{{Token}}' + frame + ':' + (told = now));
    // Nobody hears of fields that the page itself clears.
    clearTimeout(again);
    if (told) again = setTimeout(tell, 30000, true);
  };
  globalThis.zarvelaLoss = () => state(true);

  const note = event => {
    const field = targetOf(event);
    if (event.isTrusted && !before.has(field)) before.set(field, contentOf(field));
  };
  addEventListener('beforeinput', note, true);
  addEventListener('input', event => {
    const field = targetOf(event);
    // Fields that are not typed into only tell of a change that is made.
    if (event.isTrusted && !before.has(field)) {
      const isBox = field.type === 'checkbox' || field.type === 'radio';
      before.set(field, isBox ? String(!field.checked) : field.defaultValue ?? hidden);
    }
    if (!told.includes('u')) tell();
  }, true);
  const forget = form => {
    for (const field of [...before.keys()]) {
      if (field.form === form || (before.get(field) === hidden && field.closest('form') === form)) before.delete(field);
    }
    tell();
  };
  // One that the page keeps from being sent may yet be refused by it: then the fields tell by what is in them.
  // Not by a timer, which does not run where the page's scripts may not.
  const settle = event => scheduler.postTask(() => event.defaultPrevented || forget(event.target));
  for (const moment of ['submit', 'reset']) addEventListener(moment, settle, true);
  for (const moment of ['play', 'pause', 'ended', 'emptied']) document.addEventListener(moment, () => tell(), true);
  document.addEventListener('visibilitychange', () => document.hidden && tell(true));
  addEventListener('pagehide', () => told && console.debug('{{Token}}' + frame + ':'));
})();
