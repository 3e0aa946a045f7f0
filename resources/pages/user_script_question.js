// Runs before a user script in the world of that one and gives it what it asks with, by a name that nothing else knows.
// Frames without an address of the web have nothing to ask.
(() => {
  const {confirm} = window;
  if ('{{Question}}' in window) return;
  const mayRun = () => (window === top || /^https?:$/.test(location.protocol)) &&
      confirm('{{Token}} {{Id}} ' + (window === top) + ' ' + location.href);
  Object.defineProperty(window, '{{Question}}', {value: mayRun});
})();
