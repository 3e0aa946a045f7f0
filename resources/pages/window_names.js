// Runs before a page's own scripts and tells the program the name of a window that they ask for, see link_targets.js.
(() => {
  const {Reflect, console, open} = window;
  const {debug} = console;
  const tell = name => Reflect.apply(debug, console, ['{{Token}}open:' + name]);
  window.open = {
    open(...parameters) {
      if (parameters.length > 1) parameters[1] = `${parameters[1]}`;
      tell(parameters.length > 1 ? parameters[1] : '');
      try {
        return Reflect.apply(open, window, parameters);
      } finally {
        tell('');
      }
    }
  }.open;
})();
