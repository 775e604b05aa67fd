// ---- Search: every word must be in the name, GlobalId, entity or #name of an instance, or in one of its property
// sets.

const SLICE = 12; // milliseconds of work without a pause

const queryElement = byId('query');
const statusElement = byId('status');
const resultsElement = byId('results');
let search = 0; // number of the last one; older ones stop
let heads = null; // texts of instances that words are looked for in

const headOf = (place) => ['#' + ids[place], entityOf(place)[0], nameOf(place), longNameOf(place),
  model.globalIds[place] || ''].join(' ');
const pause = () => new Promise((resume) => { setTimeout(resume); });

async function find(query, isCurrent) {
  const words = query.toLowerCase().split(/\s+/).filter(Boolean);
  const exact = query.trim();
  let until = performance.now() + SLICE;
  const isStopped = async () => {
    if (performance.now() < until) return false;
    await pause();
    until = performance.now() + SLICE;
    return !isCurrent();
  };
  const { keys, props, sets } = part('props');
  const lower = keys.map((key) => key.toLowerCase());
  const inSets = []; // of each word the sets that have it, with a property to show
  for (const word of words) {
    const isKey = lower.map((key) => key.includes(word));
    const hits = new Uint8Array(props.length);
    for (let i = 0; i < props.length; i += 1) {
      const [key, value] = props[i];
      if (isKey[key] || String(value).toLowerCase().includes(word)) hits[i] = 1;
      if (i % 1000 === 0 && await isStopped()) return null;
    }
    const shown = new Map();
    for (let i = 0; i < sets.length; i += 1) {
      const hit = sets[i].findIndex((member, at) => (at ? hits[member] : isKey[member]));
      if (hit >= 0) shown.set(i, hit ? sets[i][hit] : sets[i][1]);
      if (i % 1000 === 0 && await isStopped()) return null;
    }
    inSets.push(shown);
  }
  const found = [];
  heads = heads || [];
  for (let place = 0; place < count; place += 1) {
    if (place % 500 === 0 && await isStopped()) return null;
    const head = heads[place] ??= headOf(place).toLowerCase();
    let property;
    const isFound = words.every((word, i) => {
      if (head.includes(word)) return true;
      const set = model.sets[place] && model.sets[place].find((each) => inSets[i].has(each < 0 ? -1 - each : each));
      if (set === undefined || set === 0) return false;
      property = inSets[i].get(set < 0 ? -1 - set : set);
      return true;
    });
    if (!isFound) continue;
    const isExact = [nameOf(place), model.globalIds[place], '#' + ids[place]].includes(exact);
    found.push({ place, property, isExact });
  }
  const rank = ({ isExact, property }) => (isExact ? 0 : property === undefined ? 1 : 2);
  return found.sort((a, b) => rank(a) - rank(b) || a.place - b.place);
}
function renderResult({ place, property }) {
  const item = make('li', null, linkTo(place));
  if (property !== undefined) {
    const { keys, props } = part('props');
    const [key, value, unit = 0] = props[property];
    item.append(span('why', `${keys[key]}: ${Array.isArray(value) ? '#' + value[0] : value} ${unitText(keys[unit])}`));
  }
  return item;
}
async function runSearch(query) {
  const number = search += 1;
  const isEmpty = !query.trim();
  treeElement.hidden = !isEmpty;
  resultsElement.hidden = isEmpty;
  if (isEmpty) {
    statusElement.textContent = '';
    resultsElement.replaceChildren();
    return;
  }
  statusElement.textContent = 'Searching \u2026';
  const found = await find(query, () => number === search);
  if (!found || number !== search) return;
  statusElement.textContent = found.length ? `${grouped(found.length)} found` : 'Nothing found';
  resultsElement.replaceChildren(...pagedList('ul', 'links', found, renderResult));
}
let typing = 0;
queryElement.addEventListener('input', () => {
  clearTimeout(typing);
  statusElement.textContent = queryElement.value.trim() ? 'Searching \u2026' : '';
  typing = setTimeout(runSearch, 150, queryElement.value);
});
queryElement.form.addEventListener('submit', (event) => {
  event.preventDefault();
  clearTimeout(typing);
  runSearch(queryElement.value).then(() => resultsElement.querySelector('a')?.focus());
});
queryElement.addEventListener('keydown', (event) => {
  if (event.key === 'ArrowDown') resultsElement.querySelector('a')?.focus();
});
