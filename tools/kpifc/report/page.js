// ---- What is shown is what the address says.

const itemElement = byId('item');
const overviewElement = byId('overview');
const pageTitle = document.title;
let isFirst = true;

function addressText() {
  try {
    return decodeURIComponent(location.hash);
  } catch {
    return location.hash;
  }
}
function show() {
  const address = addressText();
  const isItem = /^#i\d+$/.test(address);
  const place = isItem ? placeOf.get(address.slice(2)) : undefined;
  document.body.classList.toggle('at-item', isItem);
  itemElement.hidden = !isItem;
  overviewElement.hidden = isItem;
  document.title = place === undefined ? pageTitle : `${captionOf(place)} \u2013 ${pageTitle}`;
  if (isItem) {
    itemElement.replaceChildren(...(place === undefined
      ? [make('h2', { id: 'item-name', tabindex: -1 }, `#${address.slice(2)} is not on this page`),
        make('p', null, make('a', { href: '#overview' }, 'Overview'))]
      : renderItem(place)));
    scrollTo(0, 0);
    if (place !== undefined) reveal(place);
    if (!isFirst && !treeElement.contains(document.activeElement)) byId('item-name').focus({ preventScroll: true });
  } else if (address.startsWith('#q=')) {
    queryElement.value = address.slice(3);
    runSearch(queryElement.value);
    queryElement.focus();
  } else if (address.length > 1) {
    byId(address.slice(1))?.scrollIntoView();
  }
  isFirst = false;
}
addEventListener('hashchange', show);
// Folded parts are printed, too.
let unfolded = [];
addEventListener('beforeprint', () => {
  unfolded = [...document.querySelectorAll('main details:not([open])')];
  for (const each of unfolded) each.open = true;
});
addEventListener('afterprint', () => { for (const each of unfolded) each.open = false; });

for (const each of document.querySelectorAll('.needs-script')) each.hidden = false;
addRows(treeElement, rootItems, 1, 0, 0, false);
if (treeElement.firstElementChild) {
  setStop(treeElement.firstElementChild);
  for (let element = treeElement.firstElementChild, depth = 0; element && depth < 3; depth += 1) {
    expand(element);
    const list = element.querySelector('ul');
    element = list && list.children.length === 1 ? list.firstElementChild : null;
  }
} else {
  treeElement.replaceWith(make('p', { class: 'none', id: 'tree' }, 'The file tells of no structure.'));
}
show();
