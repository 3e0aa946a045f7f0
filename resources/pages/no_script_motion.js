// Runs before a page's own scripts where nothing is to move, see no_motion.js: what they set in motion is at its end at
// once, and so is what moves in the trees that they keep for themselves.
(() => {
  const {Reflect, queueMicrotask} = window;
  const motion = Animation.prototype;
  const {play, finish, cancel} = motion;
  const {updateTiming, getComputedTiming} = AnimationEffect.prototype;
  const valueOf = (of, name) => Object.getOwnPropertyDescriptor(of, name).get;
  const effectOf = valueOf(motion, 'effect');
  const stateOf = valueOf(motion, 'playState');
  const targetOf = valueOf(Event.prototype, 'target');
  const listen = EventTarget.prototype.addEventListener;
  const {animate, attachShadow} = Element.prototype;
  const {getAnimations} = Element.prototype;
  const isEndless = effect => Reflect.apply(getComputedTiming, effect, []).endTime === Infinity;
  const end = animation => {
    const effect = Reflect.apply(effectOf, animation, []);
    if (!effect || Reflect.apply(stateOf, animation, []) !== 'running') return;
    if (isEndless(effect)) Reflect.apply(updateTiming, effect, [{iterations: 1}]);
    Reflect.apply(isEndless(effect) ? cancel : finish, animation, []);
  };
  // Not before the page has said what is to happen at the end.
  const endSoon = animation => Reflect.apply(queueMicrotask, window, [() => end(animation)]);
  const endOf = event => {
    for (const animation of Reflect.apply(getAnimations, Reflect.apply(targetOf, event, []), [{subtree: true}]))
      end(animation);
  };
  Element.prototype.animate = {
    animate(...parameters) {
      const animation = Reflect.apply(animate, this, parameters);
      endSoon(animation);
      return animation;
    }
  }.animate;
  motion.play = {
    play() {
      Reflect.apply(play, this, []);
      endSoon(this);
    }
  }.play;
  Element.prototype.attachShadow = {
    attachShadow(...parameters) {
      const root = Reflect.apply(attachShadow, this, parameters);
      for (const kind of ['animationstart', 'transitionrun', 'transitionstart'])
        Reflect.apply(listen, root, [kind, endOf, true]);
      return root;
    }
  }.attachShadow;
})();
