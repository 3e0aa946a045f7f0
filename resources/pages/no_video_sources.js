// Runs before a page's own scripts where no videos are to play, see no_videos.js: what they feed to players by
// themselves can be sound, but no video.
(() => {
  const {Reflect, String} = window;
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
})();
