// An XML message as people read it: indented, with names, attributes and texts in their own colours, and with
// documents that are sent as escaped text opened. Any other text, and the rest of a damaged message, is
// shown as it is.
import {make} from './dom.js';

const TOKENS =
  /<!--[^]*?-->|<!\[CDATA\[[^]*?\]\]>|<\?[^]*?\?>|<[/!]?[^\s<>/"'=]+(?:"[^"]*"|'[^']*'|[^"'<>])*>|[^<]+|</g;
const PARTS = /^(<\/?[^\s/>]+)([^]*?)(\/?>)$/;
const ESCAPED_DOCUMENT = /^\s*&lt;[^]*&gt;\s*$/;
const ENTITIES = {lt: '<', gt: '>', amp: '&', quot: '"', apos: "'"};
const DEEPEST = 40;

const unescape = (text) => text.replace(/&(lt|gt|amp|quot|apos);/g, (_, name) => ENTITIES[name]);

function kindOf(token) {
  if (/^<[^!?/\s]/.test(token) && token.endsWith('>')) return token.endsWith('/>') ? 'empty' : 'start';
  if (/^<\/./.test(token)) return 'end';
  return token.startsWith('<!') || token.startsWith('<?') ? 'other' : 'text';
}

// Lines of tokens: [{depth, inner, tokens: [{kind, text}, ...]}, ...]. A text stays in the line of its tags;
// the lines of an escaped document are `inner`.
export function linesOf(xml, inner = false) {
  const lines = [];
  let depth = 0;
  let open = null; // the line of a start tag that has no child yet
  const add = (kind, text, at) => lines.push({depth: Math.min(at, DEEPEST), inner, tokens: [{kind, text}]});
  for (const [token] of xml.matchAll(TOKENS)) {
    const kind = kindOf(token);
    if (kind === 'text' && token.trim() === '') continue;
    if (kind === 'end') {
      depth = Math.max(0, depth - 1);
      if (open) open.tokens.push({kind, text: token});
      else add(kind, token, depth);
      open = null;
    } else if (kind === 'text' && !inner && ESCAPED_DOCUMENT.test(token)) {
      for (const line of linesOf(unescape(token), true)) lines.push({...line, depth: depth + line.depth});
      open = null;
    } else if (kind === 'text' && open) open.tokens.push({kind, text: inner ? unescape(token) : token});
    else {
      add(kind, token, depth);
      open = kind === 'start' ? lines[lines.length - 1] : null;
      if (kind === 'start') ++depth;
    }
  }
  return lines;
}

function appendToken(parent, {kind, text}) {
  const parts = ['start', 'empty', 'end'].includes(kind) ? PARTS.exec(text) : null;
  if (!parts) parent.append(kind === 'other' ? make('span', {class: 'xml-other', text}) : text);
  else
    parent.append(
      make('span', {class: 'xml-name', text: parts[1]}),
      make('span', {class: 'xml-attribute', text: parts[2]}),
      make('span', {class: 'xml-name', text: parts[3]}),
    );
}

// An element that shows the message; `isRaw` shows exactly what was sent.
export function envelopeElement(text, isRaw = false) {
  const block = make('pre', {class: 'envelope', tabindex: 0});
  if (isRaw || !text.trimStart().startsWith('<')) {
    block.textContent = text;
    return block;
  }
  for (const line of linesOf(text)) {
    const place = line.inner ? make('span', {class: 'xml-inner'}) : block;
    block.append('  '.repeat(line.depth));
    line.tokens.forEach((token) => appendToken(place, token));
    if (line.inner) block.append(place);
    block.append('\n');
  }
  return block;
}
