// Numbers, times and sizes as people read them.

const whole = new Intl.NumberFormat('en');
const clock = new Intl.DateTimeFormat('en-GB', {hour: '2-digit', minute: '2-digit', second: '2-digit'});

export const countText = (count) => whole.format(count);

export const plural = (count, one, several = one + 's') =>
  `${countText(count)} ${count === 1 ? one : several}`;

export function timeText(time) {
  const date = new Date(time);
  return Number.isNaN(date.getTime()) ? '' : clock.format(date);
}

export function durationText(milliseconds) {
  if (!Number.isFinite(milliseconds)) return '';
  if (milliseconds < 10) return `${milliseconds.toFixed(1)} ms`;
  if (milliseconds < 1000) return `${Math.round(milliseconds)} ms`;
  return `${(milliseconds / 1000).toFixed(2)} s`;
}

export function sizeText(bytes) {
  const units = ['bytes', 'KiB', 'MiB', 'GiB'];
  let size = bytes;
  let unit = 0;
  while (size >= 1024 && unit + 1 < units.length) {
    size /= 1024;
    ++unit;
  }
  return unit === 0 ? plural(bytes, 'byte') : `${size.toFixed(size < 10 ? 1 : 0)} ${units[unit]}`;
}
