// The rows of a long table, packed as bytes. The browser lets its heap grow by a multiple of what it holds
// before it collects the garbage of scrolling, so a table in the heap would cost five times its size.

const BLOCK = 100;
const encoder = new TextEncoder();
const decoder = new TextDecoder();

// Read like an array: length, at(), slice().
export class PackedRows {
  constructor(rows) {
    this.length = rows.length;
    this.blocks = [];
    for (let from = 0; from < rows.length; from += BLOCK)
      this.blocks.push(encoder.encode(JSON.stringify(rows.slice(from, from + BLOCK))));
    this.open = {number: -1, rows: []};
  }

  at(index) {
    const number = Math.floor(index / BLOCK);
    if (number !== this.open.number)
      this.open = {number, rows: JSON.parse(decoder.decode(this.blocks[number]))};
    return this.open.rows[index % BLOCK];
  }

  slice(from, to) {
    return Array.from({length: Math.max(0, Math.min(to, this.length) - from)}, (_, index) =>
      this.at(from + index),
    );
  }
}
