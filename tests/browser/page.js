// What the suite asks of a page in the browser: what it shows, and where an edit can be made.
// Says nothing of how the converter works; it looks at what is rendered.
'use strict';
const LINK = 'a, span[style*="border-bottom"]';
const CAPTION = '[data-text]';
const ATOM = 'input, select, img:not([data-room])';
const FIELD = 'input, select, img:not([data-room]), [data-text=value], [data-text=alt], span[style*="inline-block"]';
const GROUP = 'div[style*="padding:2px"], div[style*="padding: 2px"]';  // a fieldset, which has no alignment of its own
const ALIGN = {center: 'center', '-webkit-center': 'center', right: 'right', '-webkit-right': 'right', end: 'right'};
const CARET = '\uE000';

const isCaption = (line) => line.role === 'title' || line.role === 'label';

// A walk over the page as it is rendered: lines of characters, each with its node and its formats.
class Rendering {
  constructor(withCaret) {
    this.lines = [];
    this.line = null;
    const selection = getSelection();
    this.caret = withCaret && selection.rangeCount ? selection.getRangeAt(0) : null;
    this.cards = [...document.querySelectorAll('.card')].filter((card) => !card.querySelector('.card'));
    this.visit(document.body, {underlined: false, card: -1, role: ''});
    this.endLine();
    const filled = new Set(this.lines.filter((line) => line.glyphs.length && line.role !== 'title').map((line) => line.card));
    this.lines = this.lines.filter((line) => line.glyphs.length || filled.has(line.card));  // a caret may stand there
  }
  openLine(context) {
    if (!this.line) {
      const block = context.block || document.body;
      this.line = {glyphs: [], block, role: context.role, card: context.card,
        align: block.closest(GROUP) ? '' : ALIGN[getComputedStyle(block).textAlign] || 'left'};
    }
    return this.line;
  }
  endLine(isBroken, context) {
    if (isBroken) this.openLine(context).isBroken = true;
    const line = this.line;
    this.line = null;
    if (!line) return;
    const isBlank = (glyph) => glyph.text === ' ' || glyph.text === '\u00A0';
    while (line.glyphs.length && isBlank(line.glyphs[line.glyphs.length - 1])) line.glyphs.pop();
    while (line.glyphs.length && isBlank(line.glyphs[0])) line.glyphs.shift();
    if (line.glyphs.length || (line.isBroken && !isCaption(line))) this.lines.push(line);
  }
  put(text, node, offset, context, isAtom) {
    this.openLine(context).glyphs.push({text, node, offset, isAtom, format: context.format || ''});
  }
  markCaret(node, offset, context) {
    if (this.caret && this.caret.startContainer === node && this.caret.startOffset === offset)
      this.put(CARET, node, offset, context);
  }
  visit(node, context) {
    if (node.nodeType === Node.TEXT_NODE) return this.visitText(node, context);
    if (node.nodeType !== Node.ELEMENT_NODE) return;
    const style = getComputedStyle(node);
    if (style.display === 'none' || node.matches('[data-room]:not(p)') || isInvitation(node)) return;
    if (node.tagName === 'BR') return this.endLine(true, context);
    const isBlock = !style.display.startsWith('inline') && style.display !== 'contents';
    const inner = this.contextOf(node, style, isBlock, context);
    if (node.matches('img, input, select')) 
      return this.put(this.labelOf(node), node, 0, inner, true);
    if (isBlock) this.endLine();
    [...node.childNodes].forEach((child, index) => {
      this.markCaret(node, index, inner);
      this.visit(child, inner);
    });
    this.markCaret(node, node.childNodes.length, inner);
    if (isBlock) this.endBlock(node);
  }
  // An empty line at the end of a block that has others lets a caret be there, and shows nothing on a phone.
  endBlock(node) {
    this.endLine();
    const [before, last] = this.lines.slice(-2);
    if (last && !last.glyphs.length && node.contains(last.block) && node.contains(before.block) &&
      (last.block === before.block || node.tagName === 'P')) this.lines.pop();
    // HTML drops the line end that a pre begins with, and browsers do not write it again.
    if (node.tagName === 'PRE') this.lines = this.lines.filter((line, i) => line.block !== node || line.glyphs.length ||
      this.lines.slice(0, i).some((other) => other.block === node && other.glyphs.length));
  }
  contextOf(node, style, isBlock, outer) {
    const underlined = outer.underlined || style.textDecorationLine.includes('underline');
    const format = [style.fontWeight >= 600 && 'b', style.fontStyle === 'italic' && 'i', underlined && 'u',
      Math.round(parseFloat(style.fontSize)), node.closest(LINK) && 'link'].filter(Boolean).join(' ');
    const card = this.cards.indexOf(node);
    return {...outer, underlined, format, isPre: style.whiteSpace.startsWith('pre'),
      block: isBlock ? node : outer.block, card: card < 0 ? outer.card : card,
      role: this.roleOf(node) || outer.role};
  }
  roleOf(node) {
    if (node.matches('h2, [data-text=title]')) return 'title';
    if (node.matches('[data-text=label]')) return 'label';
    if (node.matches('td')) return `cell ${node.parentNode.rowIndex} ${node.cellIndex}`;
    return node.matches('pre') ? 'pre' : '';
  }
  labelOf(node) {
    if (node.tagName === 'SELECT')
      return `[${[...node.querySelectorAll('optgroup, option')].map((o) => o.label || o.text).join('|')}]`;
    return `[${node.tagName === 'IMG' ? node.alt : node.value}]`;
  }
  visitText(node, context) {
    for (let at = 0; at <= node.data.length; ++at) {
      this.markCaret(node, at, context);
      const letter = node.data[at];
      if (letter === undefined || letter === '\u200B') continue;
      if (context.isPre && letter === '\n') {
        this.endLine(true, context);
      } else if (/[ \t\n\r\f]/.test(letter) && !context.isPre) {
        const last = this.line && this.line.glyphs.filter((glyph) => glyph.text !== CARET).pop();
        if (last && last.text !== ' ') this.put(' ', node, at, context);
      } else {
        this.put(letter, node, at, context);
      }
    }
  }
}

const plainOf = (line) => line.glyphs.map((glyph) => glyph.text).join('').replace(/\u00A0/g, ' ');

// A paragraph that is there for the caret: a deck has no place for the empty line that it shows.
const isInvitation = (node) => node.matches('p[data-room], p[data-part]') && !node.textContent.trim() &&
  !node.querySelector(ATOM) && partsLike(node) < 2;
const partsLike = (node) => [...node.parentNode.children].filter((other) => other.hasAttribute('data-part') &&
  other.getAttribute('data-part') === node.getAttribute('data-part')).length;

// A line with its formats, to be compared: `card|role|align|<b 16>bold</>`.
function writtenOf(line) {
  let text = `${line.card}|${line.role}|${line.glyphs.length ? line.align : ''}|`;
  let format = null;
  for (const glyph of line.glyphs) {
    const isBlank = /^[ \u00A0]$/.test(glyph.text);
    const seen = isCaption(line) || glyph.isAtom ? '' : glyph.format;  // WML has no bold label
    if (!isBlank && seen !== format) text += `<${format = seen}>`;
    text += isBlank ? ' ' : glyph.text;
  }
  return text;
}

function show(withCaret) {
  const lines = new Rendering(withCaret).lines;
  return {lines: lines.map(writtenOf), plain: lines.map((line) => plainOf(line))};
}

// ---- Places: lists of ranges [node, offset, node, offset] ----

const caretAt = (node, offset) => [node, offset, node, offset];
const isFlow = (node) => !node.parentNode.closest(`${CAPTION}, h2, td, pre, select, button, caption, legend`) &&
  !ancestors(node).some((e) => e.tagName === 'SPAN' && getComputedStyle(e).display !== 'inline');

function ancestors(node) {
  const found = [];
  for (let at = node.parentElement; at; at = at.parentElement) found.push(at);
  return found;
}

function texts(root = document.body) {
  const walker = document.createTreeWalker(root, NodeFilter.SHOW_TEXT);
  const found = [];
  while (walker.nextNode()) found.push(walker.currentNode);
  return found;
}

function wordsIn(nodes) {
  return nodes.flatMap((node) => [...node.data.matchAll(/[\p{L}\p{N}]{3,}/gu)]
    .map((match) => [node, match.index, node, match.index + match[0].length]));
}

const flow = () => texts().filter(isFlow);
const contents = (element) => [element, 0, element, element.childNodes.length];
const lines = () => new Rendering(false).lines;
const isParagraph = (line) => line.role === '' && line.glyphs.length > 0 && line.card >= 0 &&
  line.glyphs[0].node.nodeType === Node.TEXT_NODE && isFlow(line.glyphs[0].node);
const startOf = (line) => [line.glyphs[0].node, line.glyphs[0].offset];
const endOf = (line) => {
  const last = line.glyphs[line.glyphs.length - 1];
  return last.node.nodeType === Node.TEXT_NODE ? [last.node, last.offset + 1]
    : [last.node.parentNode, [...last.node.parentNode.childNodes].indexOf(last.node) + 1];
};
const middleOf = ([node, from, , to]) => caretAt(node, from + (to - from >> 1));
const shownText = (element) => texts(element).filter((node) => node.data.trim());
const captions = (selector) => [...document.querySelectorAll(selector)].filter((e) => shownText(e).length);
const inside = (element) => {
  const all = shownText(element);
  return [all[0], 0, all[all.length - 1], all[all.length - 1].length];
};

// The lines of paragraphs, by block: [[line, line], [line]].
function paragraphs() {
  const found = [];
  for (const line of lines().filter(isParagraph)) {
    const last = found[found.length - 1];
    if (last && last[0].block === line.block) last.push(line);
    else found.push([line]);
  }
  return found;
}

// Starts of paragraphs whose line before, in the same card, is such as `test` says.
function startsAfter(test) {
  const all = lines();
  return all.filter((line, index) => index > 0 && isParagraph(line) && all[index - 1].card === line.card &&
    all[index - 1].block !== line.block && test(all[index - 1], line)).map((line) => caretAt(...startOf(line)));
}
function endsBefore(test) {
  const all = lines();
  return all.filter((line, index) => index + 1 < all.length && isParagraph(line) &&
    all[index + 1].card === line.card && all[index + 1].block !== line.block && test(all[index + 1], line))
    .map((line) => caretAt(...endOf(line)));
}
const isInP = (line) => line.block.tagName === 'P';
// A range from the middle of one line to the middle of the next that `test` takes.
function across(test) {
  const all = lines().filter((line) => isParagraph(line) && line.glyphs.length > 2);
  return all.slice(1).map((line, index) => [all[index], line]).filter(([one, two]) => test(one, two))
    .map(([one, two]) => {
      const from = one.glyphs[one.glyphs.length >> 1], to = two.glyphs[two.glyphs.length >> 1];
      return [from.node, from.offset, to.node, to.offset];
    }).filter(([from, , to]) => from.data && to.data);
}
const whole = (group) => [...startOf(group[0]), ...endOf(group[group.length - 1])];

const PLACES = {
  word: () => wordsIn(flow()),
  plainWord: () => wordsIn(flow().filter((node) => node.parentNode.tagName === 'P')),
  wordMiddle: () => wordsIn(flow()).map(middleOf),
  wordStart: () => wordsIn(flow()).map(([node, from]) => caretAt(node, from)),
  wordEnd: () => wordsIn(flow()).map(([, , node, to]) => caretAt(node, to)),
  lineStart: () => lines().filter(isParagraph).map((line) => caretAt(...startOf(line))),
  lineEnd: () => lines().filter(isParagraph).map((line) => caretAt(...endOf(line))),
  line: () => lines().filter(isParagraph).map((line) => [...startOf(line), ...endOf(line)]),
  beforeInline: () => flow().filter((node) => /\S$/.test(node.data) && node.nextSibling &&
    node.nextSibling.nodeType === 1 && node.nextSibling.tagName !== 'BR').map((node) => caretAt(node, node.length)),
  afterInline: () => flow().filter((node) => /^\S/.test(node.data) && node.previousSibling &&
    node.previousSibling.nodeType === 1 && node.previousSibling.tagName !== 'BR').map((node) => caretAt(node, 0)),
  afterBreak: () => lines().filter((line, index, all) => index > 0 && isParagraph(line) &&
    all[index - 1].block === line.block).map((line) => caretAt(...startOf(line))),
  link: () => captions(LINK).map(inside),
  linkPart: () => captions(LINK).flatMap((e) => wordsIn(shownText(e)).slice(0, 1))
    .map(([node, from, , to]) => [node, from, node, from + (to - from + 1 >> 1)]),
  linkMiddle: () => captions(LINK).flatMap((e) => wordsIn(shownText(e)).slice(0, 1)).map(middleOf),
  formatPart: () => captions('b, strong').flatMap((e) => wordsIn(shownText(e)).slice(0, 1))
    .map(([node, from, , to]) => [node, from, node, to - 1]),
  format: () => captions('b, strong, i, em, u, big, small').map(inside),
  cellWord: () => captions('td').flatMap((e) => wordsIn(shownText(e)).slice(0, 1)),
  cellMiddle: () => captions('td').map((e) => caretAt(shownText(e)[0], shownText(e)[0].length)),
  cell: () => captions('td').map(inside),
  preMiddle: () => captions('pre').flatMap((e) => wordsIn(shownText(e)).slice(0, 3)).map(middleOf),
  preWord: () => captions('pre').flatMap((e) => wordsIn(shownText(e)).slice(0, 3)),
  title: () => captions('h2').map(inside),
  titleMiddle: () => captions('h2').map((e) => middleOf(inside(e))),
  label: () => captions('[data-text=label]').map(inside),
  labelMiddle: () => captions('[data-text=label]').map((e) => middleOf(inside(e))),
  emptyParagraph: () => [...document.querySelectorAll('.card p')].filter((p) => !p.textContent.trim() &&
    !p.querySelector(ATOM) && !p.matches('[data-room]')).map((p) => caretAt(p, 0)),
  emptyCard: () => [...document.querySelectorAll('.card')].filter((card) => !card.textContent.trim() &&
    !card.querySelector(ATOM)).map((card) => caretAt(card.querySelector('p') || card, 0)),
  field: () => [...document.querySelectorAll(FIELD)].map((e) => {
    const at = [...e.parentNode.childNodes].indexOf(e);
    return [e.parentNode, at, e.parentNode, at + 1];
  }),
  afterField: () => PLACES.field().map(([, , node, to]) => caretAt(node, to)),
  join: () => startsAfter((before, line) => before.role === '' && isInP(before) && isInP(line)),
  joinAhead: () => endsBefore((after, line) => after.role === '' && isInP(after) && isInP(line)),
  afterBox: () => startsAfter((before) => before.role !== ''),
  beforeBox: () => endsBefore((after) => after.role !== ''),
  paragraph: () => paragraphs().map(whole),
  paragraphEnd: () => paragraphs().map((group) => caretAt(...endOf(group[group.length - 1]))),
  severalLines: () => paragraphs().filter((group) => group.length > 1).map(whole),
  oneLine: () => paragraphs().filter(([line]) => isInP(line) && !line.block.querySelector('br') &&
    !line.block.matches('[data-part]')).map(whole),
  firstParagraph: () => paragraphs().filter((group, index, all) => !index || all[index - 1][0].card !== group[0].card).map(whole),
  // Paragraphs of two words or more: the first of them, and the last.
  firstOfWords: () => severalWords().map((words) => middleOf(words[0])),
  lastOfWords: () => severalWords().map((words) => middleOf(words[words.length - 1])),
  twoLines: () => across((one, two) => one.card === two.card && one.block === two.block),
  twoParagraphs: () => across((one, two) => one.card === two.card && one.block !== two.block),
  twoCards: () => across((one, two) => one.card !== two.card),
  lastParagraphEnd: () => paragraphs().slice(-1).map((group) => caretAt(...endOf(group[group.length - 1]))),
  body: () => [contents(document.body)],
};
function severalWords() {
  return [...document.querySelectorAll('p')].map((p) => wordsIn(texts(p).filter(isFlow)))
    .filter((words) => words.length > 1);
}

// ---- What the driver calls ----

const html = () => document.body.outerHTML;
const state = () => ({shown: show(false), html: html(), inputs: suite.inputs});

function open(page) {
  document.body.innerHTML = page;
  window.focus();
  document.body.focus();
  return state();
}

function select(name, index) {
  const places = PLACES[name]();
  if (!places.length) return null;
  const [node, from, end, to] = places[index % places.length];
  getSelection().setBaseAndExtent(node, from, end, to);
  (node.parentElement || node).scrollIntoView({block: 'center'});
  const range = getSelection().getRangeAt(0);
  const rects = [...range.getClientRects()];
  const [first, last] = [rects[0], rects[rects.length - 1]];
  const hasAtom = !!range.cloneContents().querySelector(ATOM);
  return {text: getSelection().toString(), hasAtom, ...show(true),
    from: first && [first.left, first.top + first.height / 2],
    to: last && [last.right, last.top + last.height / 2]};
}

window.suite = {inputs: 0, open, state, html, select, count: (name) => PLACES[name]().length};
document.addEventListener('input', () => ++window.suite.inputs);
