// Runs in the program's own world in every frame of a page in which nothing is to move: whatever moves by style or
// markup is brought to its end as soon as it begins, with the events that its page waits for.
(() => {
  const end = animation => {
    const {effect} = animation;
    if (animation.playState !== 'running' || !effect) return;
    if (effect.getComputedTiming().endTime === Infinity) effect.updateTiming({iterations: 1});
    if (effect.getComputedTiming().endTime === Infinity) return animation.cancel();
    animation.finish();
  };
  const endOf = event => {
    if (event.target instanceof Element) event.target.getAnimations({subtree: true}).forEach(end);
  };
  const still = element => {
    if (element.localName === 'svg' && element.pauseAnimations) element.pauseAnimations();
    if (element.localName === 'marquee') {
      // It slides in at once and stays. Merely stopped it would stay out of sight.
      element.trueSpeed = true;
      element.scrollDelay = 1;
      element.scrollAmount = 1000000;
      element.behavior = 'slide';
    }
  };
  const watch = root => {
    for (const kind of ['animationstart', 'transitionrun', 'transitionstart']) root.addEventListener(kind, endOf, true);
    new MutationObserver(changes => {
      for (const {addedNodes} of changes) {
        for (const node of addedNodes) {
          if (!(node instanceof Element)) continue;
          still(node);
          node.querySelectorAll('svg, marquee').forEach(still);
        }
      }
    }).observe(root, {childList: true, subtree: true});
  };
  watch(document);
  // Those that come with the markup; scripts tell of theirs by themselves, see no_script_motion.js.
  document.addEventListener('DOMContentLoaded', () => {
    for (const element of document.querySelectorAll('*')) {
      if (element.shadowRoot) watch(element.shadowRoot);
    }
  });
})();
