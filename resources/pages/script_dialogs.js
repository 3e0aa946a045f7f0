// Runs before a page's own scripts. While the engine's own alert, confirm and prompt are open, the engine stands still,
// all other pages with it. So these ask with a request that only this page waits for, and the program answers it when
// the user has. Where such a request is not let through, the engine's own are what is left.
(() => {
  const {Reflect, RegExp, String, encodeURIComponent} = window;
  const Request = XMLHttpRequest;
  const {open, send, setRequestHeader} = Request.prototype;
  const read = Object.getOwnPropertyDescriptor(Request.prototype, 'responseText').get;
  const replace = RegExp.prototype[Symbol.replace];
  const cut = String.prototype.slice;
  const native = {alert: window.alert, confirm: window.confirm, prompt: window.prompt};
  const address = (location.protocol === 'file:' ? '{{LocalScheme}}' : '{{Scheme}}') + ':';
  // Never a part of the address, which the page may see: performance.getEntries() lists it.
  const token = '{{Token}}';
  const longest = {{Longest}};
  // Halves of pairs have no place in an address.
  const encode = text =>
      encodeURIComponent(Reflect.apply(replace, /\p{Surrogate}/gu, [Reflect.apply(cut, text, [0, longest]), '\ufffd']));
  const ask = (kind, text, value) => {
    const request = new Request();
    Reflect.apply(open, request, ['GET', address + kind + '?' + encode(text) + '&' + encode(value), false]);
    Reflect.apply(setRequestHeader, request, ['Accept', token]);
    Reflect.apply(send, request, []);
    return Reflect.apply(read, request, []);
  };
  // A sandboxed frame may not ask, and a page that is being left neither. Only the engine knows; the program says yes to
  // this question at once, if it comes that far.
  const mayAsk = () => Reflect.apply(native.confirm, window, [token]);
  const make = (kind, answer) => ({
    [kind](...parameters) {
      const text = parameters.length > 0 ? String(parameters[0]) : '';
      const value = kind === 'prompt' && parameters.length > 1 ? String(parameters[1]) : '';
      if (!mayAsk()) return answer('');
      let said;
      try {
        said = ask(kind, text, value);
      } catch {
        return Reflect.apply(native[kind], window, kind === 'prompt' ? [text, value] : [text]);
      }
      return answer(said);
    }
  })[kind];
  window.alert = make('alert', () => undefined);
  window.confirm = make('confirm', said => said !== '');
  window.prompt = make('prompt', said => said === '' ? null : Reflect.apply(cut, said, [1]));
})();
