// Runs before a page's own scripts where no videos are to play, see no_videos.js: what they feed to players by
// themselves can be sound, but no video. And players of sound that are in no document ask again here.
(() => {
  const {Reflect, String, HTMLAudioElement} = window;
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
    return element;
  };
  window.Audio = new Proxy(window.Audio, {
    construct: (audio, parameters, target) => follow(Reflect.construct(audio, parameters, target))
  });
  Document.prototype.createElement = {
    createElement(...parameters) {
      return follow(Reflect.apply(createElement, this, parameters));
    }
  }.createElement;
})();
