// An XML message as people read it: indented, with names, attributes and texts in their own colours. Any other
// text, and the rest of a damaged message, is shown as it is.
import {make} from './dom.js';

const TOKENS =
  /<!--[^]*?-->|<!\[CDATA\[[^]*?\]\]>|<\?[^]*?\?>|<[/!]?[^\s<>/"'=]+(?:"[^"]*"|'[^']*'|[^"'<>])*>|[^<]+|</g;
const PARTS = /^(<\/?[^\s/>]+)([^]*?)(\/?>)$/;
const DEEPEST = 40;

function kindOf(token) {
  if (/^<[^!?/\s]/.test(token) && token.endsWith('>')) return token.endsWith('/>') ? 'empty' : 'start';
  if (/^<\/./.test(token)) return 'end';
  return token.startsWith('<!') || token.startsWith('<?') ? 'other' : 'text';
}

// Lines of tokens: [{depth, tokens: [{kind, text}, ...]}, ...]. A text stays in the line of its tags.
export function linesOf(xml) {
  const lines = [];
  let depth = 0;
  let open = null; // the line of a start tag that has no child yet
  const add = (kind, text, at) => lines.push({depth: Math.min(at, DEEPEST), tokens: [{kind, text}]});
  for (const [text] of xml.matchAll(TOKENS)) {
    const kind = kindOf(text);
    if (kind === 'text' && text.trim() === '') continue;
    if (kind === 'end') {
      depth = Math.max(0, depth - 1);
      if (open) open.tokens.push({kind, text});
      else add(kind, text, depth);
      open = null;
      continue;
    }
    if (kind === 'text' && open) {
      open.tokens.push({kind, text});
      continue;
    }
    add(kind, text, depth);
    open = kind === 'start' ? lines[lines.length - 1] : null;
    if (kind === 'start') ++depth;
  }
  return lines;
}

function appendToken(parent, {kind, text}) {
  const parts = kind === 'start' || kind === 'empty' || kind === 'end' ? PARTS.exec(text) : null;
  if (!parts) parent.append(kind === 'other' ? make('span', {class: 'xml-other', text}) : text);
  else
    parent.append(
      make('span', {class: 'xml-name', text: parts[1]}),
      make('span', {class: 'xml-attribute', text: parts[2]}),
      make('span', {class: 'xml-name', text: parts[3]}),
    );
}

// An element that shows the message.
export function envelopeElement(text) {
  const block = make('pre', {class: 'envelope', tabindex: 0});
  if (!text.trimStart().startsWith('<')) {
    block.textContent = text;
    return block;
  }
  for (const line of linesOf(text)) {
    block.append('  '.repeat(line.depth));
    for (const token of line.tokens) appendToken(block, token);
    block.append('\n');
  }
  return block;
}
