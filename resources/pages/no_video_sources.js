// Runs before a page's own scripts where no videos are to play, see no_videos.js: what they feed to players by
// themselves can be sound, but no video. Players in no document, or in trees that scripts keep for themselves, are seen
// to here.
(() => {
  const {Reflect, String, HTMLAudioElement, HTMLVideoElement} = window;
  const isVideo = type => /^\s*video\//i.test(type);
  for (const name of ['MediaSource', 'WebKitMediaSource', 'ManagedMediaSource']) {
    const source = window[name];
    if (!source) continue;
    const {isTypeSupported} = source;
    const {addSourceBuffer} = source.prototype;
    source.isTypeSupported = {
      isTypeSupported(type) {
        return !isVideo(String(type)) && Reflect.apply(isTypeSupported, this, [type]);
      }
    }.isTypeSupported;
    source.prototype.addSourceBuffer = {
      addSourceBuffer(type) {
        if (isVideo(String(type))) throw new DOMException('', 'NotSupportedError');
        return Reflect.apply(addSourceBuffer, this, [type]);
      }
    }.addSourceBuffer;
  }

  const mark = '#{{SoundMark}}';
  const listen = EventTarget.prototype.addEventListener;
  const {createElement} = Document.prototype;
  const {attachShadow, querySelector, removeAttribute, remove} = Element.prototype;
  const {exec} = RegExp.prototype;
  const media = HTMLMediaElement.prototype;
  const {pause, load} = media;
  const valueOf = (of, name) => Object.getOwnPropertyDescriptor(of, name).get;
  const targetOf = valueOf(Event.prototype, 'target');
  const addressOf = valueOf(media, 'currentSrc');
  const stateOf = valueOf(media, 'readyState');
  const {get: objectOf, set: setObject} = Object.getOwnPropertyDescriptor(media, 'srcObject');
  const stop = event => {
    const video = Reflect.apply(targetOf, event, []);
    if (!(video instanceof HTMLVideoElement)) return;
    const isOwn = Reflect.apply(objectOf, video, []) !== null ||
        Reflect.apply(exec, /^(data|blob|filesystem):/, [Reflect.apply(addressOf, video, [])]) !== null;
    if (!isOwn && Reflect.apply(stateOf, video, []) === 0) return;
    Reflect.apply(pause, video, []);
    Reflect.apply(setObject, video, [null]);
    Reflect.apply(removeAttribute, video, ['src']);
    for (let source; (source = Reflect.apply(querySelector, video, ['source'])) !== null;)
      Reflect.apply(remove, source, []);
    Reflect.apply(load, video, []);
  };
  const watch = place => {
    for (const moment of ['loadstart', 'loadedmetadata', 'play']) Reflect.apply(listen, place, [moment, stop, true]);
    return place;
  };
  const askAgain = event => {
    const audio = event.target;
    if (audio.isConnected || !/^https?:/.test(audio.src) || audio.src.endsWith(mark)) return;
    event.stopImmediatePropagation();
    const isPlaying = !audio.paused;
    audio.src = audio.src.split('#')[0] + mark;
    if (isPlaying) audio.play().catch(() => {});
  };
  const follow = element => {
    if (element instanceof HTMLAudioElement) Reflect.apply(listen, element, ['error', askAgain]);
    return element instanceof HTMLVideoElement ? watch(element) : element;
  };
  window.Audio = new Proxy(window.Audio, {
    construct: (audio, parameters, target) => follow(Reflect.construct(audio, parameters, target))
  });
  Document.prototype.createElement = {
    createElement(...parameters) {
      return follow(Reflect.apply(createElement, this, parameters));
    }
  }.createElement;
  Element.prototype.attachShadow = {
    attachShadow(...parameters) {
      return watch(Reflect.apply(attachShadow, this, parameters));
    }
  }.attachShadow;
})();
