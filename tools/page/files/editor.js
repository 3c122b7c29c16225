// The editor of scripts, with the fault of the last run at its line.
import {make} from './dom.js';

// Returns {text, setText, setLanguage, focus, markFault, clearFault, goTo}.
export function createEditor(parent, onRun) {
  const editor = window.CodeMirror(parent, {
    mode: 'javascript',
    theme: 'page',
    lineNumbers: true,
    lineWrapping: true,
    matchBrackets: true,
    autoCloseBrackets: true,
    tabSize: 2,
    screenReaderLabel: 'Script',
    // Tab leaves the editor, so that the keyboard reaches the rest of the page; Ctrl-] and Ctrl-[ indent.
    extraKeys: {'Ctrl-Enter': onRun, 'Cmd-Enter': onRun, Tab: false, 'Shift-Tab': false},
  });
  let fault = null;

  function clearFault() {
    if (!fault) return;
    editor.removeLineClass(fault.handle, 'wrap', 'fault-line');
    fault.widget.clear();
    fault = null;
  }

  // Lines and columns count from 1. A line that the script does not have is not marked.
  function markFault(line, column, message) {
    clearFault();
    if (!Number.isInteger(line) || line < 1 || line > editor.lineCount()) return false;
    const handle = editor.addLineClass(line - 1, 'wrap', 'fault-line');
    const place = Number.isInteger(column) ? `line ${line}, column ${column}` : `line ${line}`;
    const note = make(
      'div',
      {class: 'fault-note'},
      make('span', {class: 'fault-place', text: place}),
      message,
    );
    fault = {handle, widget: editor.addLineWidget(line - 1, note)};
    editor.scrollIntoView({line: line - 1, ch: 0}, 60);
    return true;
  }

  function goTo(line, column) {
    editor.focus();
    editor.setCursor(line - 1, Math.max(0, (column ?? 1) - 1));
  }

  editor.on('change', clearFault);
  return {
    text: () => editor.getValue(),
    setText: (text) => editor.setValue(text),
    setLanguage: (name) => editor.setOption('mode', /^javascript$/i.test(name) ? 'javascript' : null),
    focus: () => editor.focus(),
    markFault,
    clearFault,
    goTo,
  };
}
