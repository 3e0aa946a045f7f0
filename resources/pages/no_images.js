// Runs in the program's own world in every frame of a page without images. What images come as requests of their own
// the engine leaves out by itself; those that stand in addresses as data it does not.
(() => {
  // One that is opened by itself is to be seen, with all that it brings along.
  const isImage = document.contentType.startsWith('image/');
  if (!isImage && !document.documentElement) {
    // The rule outlives the element that it came in, so that the page finds its document as if nothing had been there.
    // Images of the web stay allowed here for the sake of the page's icon, which goes by this rule, too.
    const xhtml = 'http://www.w3.org/1999/xhtml';
    const root = document.createElementNS(xhtml, 'html');
    const head = document.createElementNS(xhtml, 'head');
    const rule = document.createElementNS(xhtml, 'meta');
    rule.httpEquiv = 'Content-Security-Policy';
    rule.content = 'img-src * blob: filesystem:';
    document.append(root);
    root.append(head);
    head.append(rule);
    root.remove();
  }
  // What comes all the same the engine had in its memory.
  document.addEventListener('load', event => {
    const image = event.target;
    if (!isImage && image instanceof HTMLImageElement && image.naturalWidth > 0)
      image.style.setProperty('visibility', 'hidden', 'important');
  }, true);
  // An image that is a frame of its own is a part of the page around it.
  if (isImage && window.parent !== window) {
    addEventListener('DOMContentLoaded', () => {
      for (const image of [...document.images]) image.remove();
    });
  }
})();
