// ---- The tree. An item is a node of the structure, or elements of one entity in one place.

const GROUPED_FROM = 8; // so many elements in one place are grouped by entity
const REVEAL_LIMIT = 1000; // rows that are made to show one of them

const nodeItem = (node) => ({ place: tree.nodes[node], node });
function below(node) {
  const nodes = [];
  const end = node + tree.sizes[node];
  for (let next = node + 1; next < end; next += tree.sizes[next]) nodes.push(next);
  return nodes;
}
/** Single items before groups; `elements`: items of elements, which are grouped where there are many. */
function withGroups(single, elements) {
  if (elements.length < GROUPED_FROM) return single.concat(elements);
  const groups = new Map();
  for (const item of elements) {
    const entity = entityOf(item.place)[0];
    if (!groups.has(entity)) groups.set(entity, []);
    groups.get(entity).push(item);
  }
  return single.concat([...groups.keys()].sort().map((entity) => ({ entity, members: groups.get(entity) })));
}
function itemsBelow(item) {
  if (item.members) return item.members;
  if (item.node === undefined) return [];
  const nodes = below(item.node);
  return withGroups(nodes.filter((node) => !(tree.flags[node] & 2)).map(nodeItem),
    nodes.filter((node) => tree.flags[node] & 2).map(nodeItem));
}
const rootItems = tree.roots.map(nodeItem);
if (tree.others.length) rootItems.push({ entity: 'In no project', members: tree.others.map(nodeItem) });
if (tree.loose.length) {
  rootItems.push({ entity: 'Placed nowhere', members: withGroups([], tree.loose.map((place) => ({ place }))) });
}
const sizeOf = (item) => item.members.reduce((sum, each) => sum + (each.members ? each.members.length : 1), 0);

const treeElement = byId('tree');
const itemOf = new WeakMap(); // of tree items on the page
const moreOf = new WeakMap(); // what a row "show more" does

/** `isInGroup`: whether the row above says what entity it is. */
function makeTreeItem(item, level, isInGroup) {
  const hasBelow = item.members ? true : item.node !== undefined && tree.sizes[item.node] > 1;
  const caption = item.members ? item.entity : captionOf(item.place);
  let note = '';
  if (item.members) note = grouped(sizeOf(item));
  else {
    const entity = entityOf(item.place)[0];
    note = isInGroup || caption === entity ? '#' + ids[item.place] : entity;
    if (item.node !== undefined && (tree.flags[item.node] & 4)) note += ', shown above';
  }
  const row = make('div', { class: 'row', style: `--level:${level - 1}` },
    make('span', { class: 'twist', 'aria-hidden': 'true' }),
    make('bdi', { class: 'caption' }, caption), span(item.members ? 'number' : 'type', note));
  const element = make('li',
    { role: 'treeitem', 'aria-level': level, 'aria-label': `${caption}, ${note}`, tabindex: -1 }, row);
  if (hasBelow) element.setAttribute('aria-expanded', 'false');
  itemOf.set(element, item);
  return element;
}
/** Adds rows to a list until `upTo` of the items are there, by pages. */
function addRows(list, items, level, from, upTo, isGroup) {
  const to = Math.min(items.length, Math.max(upTo, from + PAGE));
  for (let i = from; i < to; i += 1) {
    const element = makeTreeItem(items[i], level, isGroup);
    element.setAttribute('aria-setsize', items.length);
    element.setAttribute('aria-posinset', i + 1);
    list.append(element);
  }
  if (to === items.length) return;
  const more = make('li', { role: 'treeitem', 'aria-level': level, tabindex: -1, class: 'more' },
    make('div', { class: 'row', style: `--level:${level - 1}` },
      `Show more: ${grouped(to)} of ${grouped(items.length)}`));
  moreOf.set(more, (until = 0) => {
    more.remove();
    addRows(list, items, level, to, until, isGroup);
    return list.children[to];
  });
  list.append(more);
}
function expand(element) {
  if (element.getAttribute('aria-expanded') !== 'false') return;
  const list = make('ul', { role: 'group' });
  const item = itemOf.get(element);
  const isGroup = Boolean(item.members)
    && item.members.every(({ place }) => place !== undefined && entityOf(place)[0] === item.entity);
  addRows(list, itemsBelow(item), Number(element.getAttribute('aria-level')) + 1, 0, 0, isGroup);
  element.append(list);
  element.setAttribute('aria-expanded', 'true');
}
function collapse(element) {
  if (element.getAttribute('aria-expanded') !== 'true') return;
  if (element.lastElementChild.contains(document.activeElement)) focusItem(element);
  element.lastElementChild.remove();
  element.setAttribute('aria-expanded', 'false');
  if (!treeElement.querySelector('[tabindex="0"]')) setStop(element);
}
/** The one item that Tab leads to. */
function setStop(element) {
  for (const each of treeElement.querySelectorAll('[tabindex="0"]')) each.tabIndex = -1;
  element.tabIndex = 0;
}
function focusItem(element) {
  if (!element) return;
  setStop(element);
  element.focus();
}
function activate(element) {
  const item = itemOf.get(element);
  if (moreOf.has(element)) focusItem(moreOf.get(element)());
  else if (item.members) (element.getAttribute('aria-expanded') === 'true' ? collapse : expand)(element);
  else {
    expand(element);
    location.hash = addressOf(item.place);
  }
}
treeElement.addEventListener('click', (event) => {
  const element = event.target.closest('[role=treeitem]');
  if (!element) return;
  focusItem(element);
  if (event.target.closest('.twist') && element.hasAttribute('aria-expanded')) {
    (element.getAttribute('aria-expanded') === 'true' ? collapse : expand)(element);
  } else activate(element);
});
treeElement.addEventListener('keydown', (event) => {
  const element = event.target.closest('[role=treeitem]');
  if (!element || event.altKey || event.ctrlKey || event.metaKey) return;
  const all = () => [...treeElement.querySelectorAll('[role=treeitem]')]; // none of what is closed is there
  const step = (by) => focusItem(all()[all().indexOf(element) + by]);
  const isOpen = element.getAttribute('aria-expanded') === 'true';
  const actions = {
    ArrowDown: () => step(1),
    ArrowUp: () => step(-1),
    ArrowRight: () => (isOpen ? step(1) : expand(element)),
    ArrowLeft: () => (isOpen ? collapse(element) : focusItem(element.parentElement.closest('[role=treeitem]'))),
    Home: () => focusItem(all()[0]),
    End: () => focusItem(all().at(-1)),
    Enter: () => activate(element),
    ' ': () => activate(element),
  };
  if (!actions[event.key]) return;
  event.preventDefault();
  actions[event.key]();
});

let firstNodes = null; // of each place its first node
let parents = null; // of each node the one above, -1 of roots
function prepareWays() {
  firstNodes = new Map();
  parents = new Int32Array(tree.nodes.length).fill(-1);
  tree.nodes.forEach((place, node) => {
    if (!firstNodes.has(place)) firstNodes.set(place, node);
    for (const next of below(node)) parents[next] = node;
  });
}
/** The nodes from a root down to where an instance stands. */
function wayTo(place) {
  if (!firstNodes) prepareWays();
  const way = [];
  for (let node = firstNodes.get(place) ?? -1; node >= 0; node = parents[node]) way.unshift(node);
  return way;
}
function holds(item, node, place) {
  if (item.members) return item.members.some((each) => holds(each, node, place));
  if (item.node === undefined || node === undefined) return item.place === place;
  return item.node <= node && node < item.node + tree.sizes[item.node];
}
/** Opens the tree where an instance stands, and marks it. */
function reveal(place) {
  for (const each of treeElement.querySelectorAll('[aria-selected]')) each.removeAttribute('aria-selected');
  const node = wayTo(place).at(-1);
  let list = treeElement;
  let items = rootItems;
  for (;;) {
    const index = items.findIndex((item) => holds(item, node, place));
    if (index < 0 || index >= REVEAL_LIMIT) return;
    if (index >= list.children.length || moreOf.has(list.children[index])) moreOf.get(list.lastElementChild)(index + 1);
    const element = list.children[index];
    if (!items[index].members && items[index].place === place) {
      element.setAttribute('aria-selected', 'true');
      setStop(element);
      const row = element.firstElementChild;
      if (!treeElement.contains(document.activeElement)) row.scrollIntoView({ block: 'nearest' });
      return;
    }
    expand(element);
    items = itemsBelow(items[index]);
    list = element.lastElementChild;
  }
}
