// Runs in the program's own world in every frame of a page without videos. What videos come as requests of their own is
// stopped there; this is for those that are made of what the page has already.
(() => {
  const stop = event => {
    const video = event.target;
    if (!(video instanceof HTMLVideoElement) || !/^(data|blob|filesystem):/.test(video.currentSrc)) return;
    video.pause();
    video.removeAttribute('src');
    for (const source of [...video.querySelectorAll('source')]) source.remove();
    video.load();
  };
  for (const moment of ['loadstart', 'play']) document.addEventListener(moment, stop, true);
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
