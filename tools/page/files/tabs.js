// Tabs: the arrow keys, Home and End move between them, and only the chosen one is in the order of Tab.

// Returns {show(panel id), shown()}. `onShow` is called with the id of the panel.
export function tabs(list, onShow = () => {}) {
  const all = [...list.querySelectorAll('[role=tab]')];
  const panelOf = (tab) => document.getElementById(tab.getAttribute('aria-controls'));

  function choose(chosen) {
    for (const tab of all) {
      const isChosen = tab === chosen;
      tab.setAttribute('aria-selected', String(isChosen));
      tab.tabIndex = isChosen ? 0 : -1;
      panelOf(tab).hidden = !isChosen;
    }
    onShow(panelOf(chosen).id);
  }

  const moves = {
    ArrowRight: (at) => (at + 1) % all.length,
    ArrowLeft: (at) => (at + all.length - 1) % all.length,
    Home: () => 0,
    End: () => all.length - 1,
  };
  list.addEventListener('click', (event) => {
    const tab = event.target.closest('[role=tab]');
    if (tab) choose(tab);
  });
  list.addEventListener('keydown', (event) => {
    const move = moves[event.key];
    if (!move) return;
    event.preventDefault();
    const next = all[move(all.indexOf(document.activeElement))];
    choose(next);
    next.focus();
  });

  choose(all[0]);
  return {
    show: (id) => choose(all.find((tab) => tab.getAttribute('aria-controls') === id)),
    shown: () => all.find((tab) => tab.tabIndex === 0).getAttribute('aria-controls'),
  };
}
