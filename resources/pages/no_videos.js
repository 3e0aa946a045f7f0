// Runs in the program's own world in every frame of a page without videos. What videos come as requests of their own is
// stopped there; this is for those that are made of what the page has already, or handed out by its service worker.
(() => {
  // The engine plays sound that is opened by itself with the same element.
  const isSound = document.contentType.startsWith('audio/');
  const stop = video => {
    if (isSound || !(video instanceof HTMLVideoElement)) return;
    // An address of the web fails by itself, and its page hears of that, unless the page's worker answers.
    const isOwn = video.srcObject !== null || /^(data|blob|filesystem):/.test(video.currentSrc);
    if (!isOwn && video.readyState === HTMLMediaElement.HAVE_NOTHING) return;
    video.pause();
    video.srcObject = null;
    video.removeAttribute('src');
    for (const source of [...video.querySelectorAll('source')]) source.remove();
    video.load();
  };
  const watch = root => {
    for (const moment of ['loadstart', 'loadedmetadata', 'play'])
      root.addEventListener(moment, event => stop(event.target), true);
  };
  watch(document);
  // Trees that come with the markup; scripts tell of theirs by themselves, see no_video_sources.js.
  const watchTrees = root => {
    for (const {shadowRoot} of root.querySelectorAll('*')) {
      if (!shadowRoot) continue;
      watch(shadowRoot);
      shadowRoot.querySelectorAll('video').forEach(stop);
      watchTrees(shadowRoot);
    }
  };
  document.addEventListener('DOMContentLoaded', () => watchTrees(document));
  // An address that says nothing of what it is for counts as a video's, and is not let through. Here it is known to be
  // sound, so that it is asked for once more, with a mark that says so and stays within the program.
  const mark = '#{{SoundMark}}';
  document.addEventListener('error', event => {
    const source = event.target;
    const audio = source instanceof HTMLSourceElement ? source.parentNode : source;
    if (!(audio instanceof HTMLAudioElement) || !/^https?:/.test(source.src) || source.src.endsWith(mark)) return;
    event.stopImmediatePropagation();
    const isPlaying = !audio.paused;
    source.src = source.src.split('#')[0] + mark;
    if (source !== audio) audio.load();
    if (isPlaying) audio.play().catch(() => {});
  }, true);
})();
