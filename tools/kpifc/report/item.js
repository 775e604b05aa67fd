// ---- Properties

/** The sets of an object: name, whether it has them from its type, and properties. */
function setsOf(place) {
  if (!model.sets[place]) return [];
  const { keys, props, sets } = part('props');
  return model.sets[place].map((index) => {
    const [name, ...members] = sets[index < 0 ? -1 - index : index];
    const properties = members.map((member) => {
      const [key, value, unit = 0, measure = 0] = props[member];
      return { name: keys[key], value, unit: keys[unit], measure: keys[measure] };
    });
    return { name: keys[name], isFromType: index < 0, properties };
  });
}
function renderProperty({ value, unit }) {
  if (Array.isArray(value)) {
    const place = placeOf.get(String(value[0]));
    return place === undefined ? span('none', '#' + value[0]) : linkTo(place);
  }
  if (value === '') return span('none', '\u2013');
  return make('span', null, make('bdi', null, textValue(value)), withUnit(unit));
}
function renderSet(set) {
  const table = make('table', { class: 'set' }, make('caption', null, make('bdi', null, set.name),
    set.isFromType ? span('badge', 'from type') : null));
  const body = make('tbody');
  for (const property of set.properties) {
    body.append(make('tr', null, make('th', { scope: 'row' }, make('bdi', null, ...breakable(property.name))),
      make('td', property.measure ? { title: property.measure } : null, renderProperty(property))));
  }
  table.append(body);
  return table;
}

// ---- One instance

/** What an association says of material: one, a list, or the layers of a set. */
function renderMaterial(place) {
  const targets = (at, attribute) => [valueOf(at, attribute)].flat()
    .filter((value) => value && 'p' in value).map(({ p }) => p);
  const [set = place] = targets(place, 'ForLayerSet');
  const layers = targets(set, 'MaterialLayers').map((layer) => make('li', null,
    span('thickness', render(valueOf(layer, 'LayerThickness')), withUnit(unitOf(layer, 'LayerThickness'))),
    ...targets(layer, 'Material').map(plainLinkTo)));
  const materials = targets(set, 'Materials').map((material) => make('li', null, plainLinkTo(material)));
  const rows = [...layers, ...materials];
  return make('div', null, linkTo(set), rows.length ? make('ul', { class: 'layers' }, ...rows) : null);
}
const fact = (term, ...descriptions) => make('div', null, make('dt', null, term),
  ...descriptions.map((each) => make('dd', null, each)));

function renderFacts(place, types) {
  const facts = make('dl', { class: 'facts' });
  const [entity, supertypes] = entityOf(place);
  facts.append(fact('Entity', make('span', { title: [entity, ...supertypes].join(' < ') }, entity)));
  if (model.globalIds[place]) facts.append(fact('GlobalId', make('code', null, model.globalIds[place])));
  if (types.length) facts.append(fact('Type', ...types.map((type) => linkTo(type))));
  const materials = (of) => linkedBy(of, 'IfcRelAssociatesMaterial', 'RelatedObjects');
  const own = materials(place);
  const shown = own.length ? own : types.flatMap(materials);
  if (shown.length) {
    facts.append(fact('Material', ...shown.map(renderMaterial), ...(own.length ? [] : [span('badge', 'from type')])));
  }
  return facts;
}
function renderAttributes(place) {
  const { values } = detailOf(place);
  const set = make('tbody');
  const unset = [];
  entityOf(place)[2].forEach((name, i) => {
    const column = { Name: model.names, GlobalId: model.globalIds }[name];
    const value = values[i] === null && column && column[place] !== 0 ? column[place] : values[i];
    if (value === null) unset.push(name);
    else {
      set.append(make('tr', null, make('th', { scope: 'row' }, ...breakable(name)),
        make('td', null, render(value), withUnit(unitOf(place, name)))));
    }
  });
  const rest = unset.length ? make('p', { class: 'none' }, 'Unset: ' + unset.join(', ')) : null;
  return [make('table', { class: 'set attributes' }, set), rest];
}
function renderLinks(place) {
  const links = linksOf(place).map(([[inverse, entity, attribute, isRelation], places]) => {
    const title = inverse || (isRelation ? attribute : `${entity}.${attribute}`);
    const note = isRelation ? `${entity}, as ${attribute}` : inverse ? `${entity}.${attribute}` : 'refers to it';
    return { title, note, places };
  });
  return links.sort((a, b) => a.title.localeCompare(b.title)).map(({ title, note, places }) => {
    const list = pagedList('ul', 'links', places, (other) => make('li', null, linkTo(other)));
    return make('div', { class: 'relation' }, make('h4', null, title,
      places.length > 1 ? span('number', ` ${grouped(places.length)}`) : null, span('type', ` ${note}`)), ...list);
  });
}
let findingsByAddress = null;
function renderFindings(place) {
  if (!findingsByAddress) {
    findingsByAddress = new Map();
    for (const item of document.querySelectorAll('#findings li')) {
      for (const address of new Set([...item.querySelectorAll('a')].map((link) => link.getAttribute('href')))) {
        if (!findingsByAddress.has(address)) findingsByAddress.set(address, []);
        findingsByAddress.get(address).push(item);
      }
    }
  }
  return (findingsByAddress.get(addressOf(place)) || []).map((item) => {
    const copy = item.cloneNode(true);
    copy.prepend(item.closest('details').querySelector('.badge').cloneNode(true), ' ');
    return copy;
  });
}
function section(heading, ...children) {
  return make('section', null, make('h3', null, heading), ...children);
}
function renderItem(place) {
  const way = wayTo(place).slice(0, -1).map((node) => tree.nodes[node]);
  const crumbs = make('nav', { class: 'crumbs', 'aria-label': 'Where it stands' },
    make('a', { href: '#overview' }, 'Overview'));
  for (const each of way) crumbs.append(make('a', { href: addressOf(each) }, make('bdi', null, captionOf(each))));
  const types = linkedBy(place, 'IfcRelDefinesByType', 'RelatedObjects');
  const article = [crumbs, make('h2', { id: 'item-name', tabindex: -1 }, make('bdi', null, captionOf(place)),
    span('type', ` #${ids[place]}`)), renderFacts(place, types)];
  const found = renderFindings(place);
  if (found.length) article.push(section('Findings', ...pagedList('ul', 'found', found, (item) => item)));
  const sets = setsOf(place);
  if (sets.length) article.push(section('Properties', make('div', { class: 'sets' }, ...sets.map(renderSet))));
  article.push(section('Attributes', ...renderAttributes(place)));
  const links = renderLinks(place);
  if (links.length) article.push(section('Relations', ...links));
  return article;
}
