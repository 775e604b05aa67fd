// What the script of the page stands on: the model, making elements, values.

const PAGE = 100; // rows of a list that are made at a time

const byId = (id) => document.getElementById(id);

// ---- The model: PageData.h tells what its parts hold. Each is parsed when it is first needed.

const parsed = new Map();
function part(name) {
  if (!parsed.has(name)) parsed.set(name, JSON.parse(byId('data-' + name).textContent));
  return parsed.get(name);
}
const model = part('index');
const { ids, entities, labels, tree } = model;
const count = ids.length;
const placeOf = new Map(ids.map((id, place) => [String(id), place]));

const entityOf = (place) => entities[model.types[place]] || ['Record kept as text', [], ['Text'], {}];
const isKind = (place, name) => entityOf(place)[0] === name || entityOf(place)[1].includes(name);
const longNameOf = (place) => model.longNames[place] || '';
const addressOf = (place) => '#i' + ids[place];
/** Values and links of an instance. */
function detailOf(place) {
  const detail = part(Math.floor(place / model.chunk))[place % model.chunk];
  return typeof detail === 'string' ? { values: [detail], links: [] } : { values: detail[0], links: detail[1] };
}
function valueOf(place, attribute) {
  const index = entityOf(place)[2].indexOf(attribute);
  return index < 0 ? null : detailOf(place).values[index];
}
/** The project's unit of what an attribute holds. */
const unitOf = (place, attribute) => entityOf(place)[3][entityOf(place)[2].indexOf(attribute)];
/** Places that an instance is linked to: [label, places] each. */
function linksOf(place) {
  const { links } = detailOf(place);
  const found = [];
  for (let i = 0; i < links.length; i += 2) found.push([labels[links[i]], links[i + 1]]);
  return found;
}
const linkedBy = (place, entity, attribute) => linksOf(place)
  .filter(([label]) => label[1] === entity && label[2] === attribute).flatMap(([, places]) => places);

// ---- Making elements. Texts of the model come in as text nodes and attributes only.

function make(tag, attributes, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes || {})) element.setAttribute(name, value);
  element.append(...children.filter((child) => child !== null && child !== undefined));
  return element;
}
const span = (kind, ...children) => make('span', { class: kind }, ...children);
/** A name that may be broken between its words. */
const breakable = (name) => name.split(/(?<=[a-z])(?=[A-Z])|(?<=[_/])/)
  .flatMap((word, i) => (i ? [document.createElement('wbr'), word] : [word]));
const grouped = (number) => number.toLocaleString('en-US');

function nameOf(place) {
  const name = model.names[place];
  return name && name.trim() ? name : '';
}
/** What people call an instance: its name, the long one behind it. */
function captionOf(place) {
  const name = nameOf(place);
  const longName = longNameOf(place);
  return longName && longName !== name ? (name ? name + ' \u2013 ' : '') + longName : name || entityOf(place)[0];
}
const plainLinkTo = (place) => make('a', { href: addressOf(place) }, make('bdi', null, captionOf(place)));
function linkTo(place) {
  const isNamed = captionOf(place) !== entityOf(place)[0];
  return make('a', { href: addressOf(place), class: 'link' }, make('bdi', null, captionOf(place)),
    span('type', (isNamed ? ' ' + entityOf(place)[0] : '') + ' #' + ids[place]));
}
/** A list of which a page is made at a time. */
function pagedList(tag, kind, items, makeItem) {
  const list = make(tag, { class: kind });
  const more = make('button', { type: 'button', class: 'more' });
  let shown = 0;
  function showMore() {
    const next = items.slice(shown, shown + PAGE).map(makeItem);
    list.append(...next);
    const isFirst = shown === 0;
    shown += next.length;
    more.hidden = shown >= items.length;
    more.textContent = `Show ${grouped(Math.min(PAGE, items.length - shown))} more of ${grouped(items.length)}`;
    const target = !isFirst && next.length && (next[0].querySelector('a') || next[0]);
    if (target) target.focus();
  }
  more.addEventListener('click', showMore);
  showMore();
  return [list, more];
}

// ---- Values

const numberFormat = (number) => {
  const text = String(number);
  return /\.\d{7,}/.test(text) && !text.includes('e') ? String(Number(number.toPrecision(9))) : text;
};
/** A number with too many digits to be read, such as 0.30000000000000004, comes with all of them as its title. */
function textValue(text) {
  const isNumber = /^-?\d+\.\d{7,}$/.test(text) && Number.isFinite(Number(text));
  return isNumber ? make('span', { title: text }, numberFormat(Number(text))) : text;
}
const withUnit = (unit) => (unit ? span('unit', ` ${unitText(unit)}`) : null);
const unitText = (unit) => unit.replace(/m2\b/g, 'm\u00b2').replace(/m3\b/g, 'm\u00b3');

function render(value) {
  if (value === null) return span('none', '\u2013');
  if (typeof value === 'number') return textValue(String(value));
  if (typeof value !== 'object') return make('bdi', null, String(value));
  if (Array.isArray(value)) {
    const items = value.filter((item) => !(item && item.more));
    const all = span('items');
    items.forEach((item, i) => all.append(i ? ', ' : '', render(item)));
    const rest = value.length > items.length ? value[value.length - 1].more : 0;
    if (rest) all.append(span('none', ` \u2026 ${grouped(rest)} in all`));
    return all;
  }
  if ('p' in value) return linkTo(value.p);
  if ('i' in value) return span('none', `#${value.i} ${'t' in value ? entities[value.t][0] : 'kept as text'}`);
  return make('span', { title: value.t }, render(value.v));
}
