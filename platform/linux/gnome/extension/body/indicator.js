// The program in the top bar: a symbol or the labels of input sources, and a menu, all as the program describes them.
//
// Made by the extension when it is enabled. There is something in the bar from the first `show` until `close`, which
// may be called again and again. Every word comes from the program; nothing here changes by being clicked.
import {makeBadge, showLabels} from './badge.js';

const SYMBOLS = {
    keyboard: 'input-keyboard-symbolic',
    paused: 'media-playback-pause-symbolic',
    problem: 'dialog-warning-symbolic',
};
/** Seen on light and on dark menus alike. */
const DOTS = {ok: '#2da44e', neutral: '#8a8a94', problem: '#e03e36'};
const KINDS = ['toggle', 'action', 'window', 'choice', 'header', 'info', 'separator', 'menu', ...Object.keys(DOTS)];
const ROLE = 'app.hopsel.Hopsel';
const MIDDLE_BUTTON = 2;
const MOST_LINES = 256;
const MOST_CHARACTERS = 200;
const MOST_IN_LABEL = 4;

/** Lines are read aloud by a screen reader when they have the focus, also those that do nothing. */
const INFORMS = {activate: false, hover: false};

function cut(text, most) {
    return [...text].slice(0, most).join('');
}

/** What the program says, before any of it is used. */
export function mayBeShown(symbol, labels, current, lines) {
    return Object.hasOwn(SYMBOLS, symbol) && labels.length <= 2 && current < Math.max(labels.length, 1) &&
        lines.length <= MOST_LINES && lines.every(([kind]) => KINDS.includes(kind));
}

export class Indicator {
    /** Whether this shell has everything that is used here. */
    static isUsable({St, PanelMenu, PopupMenu}) {
        return [St?.DrawingArea, St?.BoxLayout, St?.Icon, PanelMenu?.Button, PopupMenu?.PopupMenuItem,
            PopupMenu?.PopupSwitchMenuItem, PopupMenu?.PopupSubMenuMenuItem, PopupMenu?.PopupSeparatorMenuItem]
            .every(made => typeof made === 'function') && Number.isInteger(PopupMenu.Ornament?.DOT);
    }

    /**
     * @param {object} shell - Clutter, St, PanelMenu, PopupMenu, addToPanel and makeToken of the shell
     * @param {Function} guard - wraps a callback so that what it throws never reaches the shell
     * @param {Function} tell - called with what was clicked: see the signal Clicked
     */
    constructor(shell, guard, tell) {
        this._shell = shell;
        this._guard = guard;
        this._tell = tell;
        this._button = null;
    }

    close() {
        this._button?.destroy();
        this._button = null;
    }

    show(...description) {
        try {
            if (!this._button) this._make();
            this._show(...description);
        } catch (error) {
            this.close(); // nothing rather than half of it
            throw error;
        }
    }

    _show(name, symbol, labels, current, lines) {
        this._button.accessible_name = cut(name, MOST_CHARACTERS);
        this._icon.icon_name = SYMBOLS[symbol];
        this._icon.visible = labels.length === 0;
        this._badge.visible = labels.length > 0;
        if (labels.length > 0) showLabels(this._badge, labels.map(label => cut(label, MOST_IN_LABEL)), current);
        this._showLines(lines.map(([kind, text, isOn, key]) => ({kind, text: cut(text, MOST_CHARACTERS), isOn, key})));
    }

    _make() {
        const {Clutter, St, PanelMenu} = this._shell;
        this._button = new PanelMenu.Button(0.5, 'Hopsel');
        this._button.connect('destroy', () => (this._button = null)); // also by the shell, with its panel
        this._button.connect('event', this._guard((actor, event) => this._pressed(event)));
        const box = new St.BoxLayout();
        this._icon = new St.Icon({style_class: 'system-status-icon', y_align: Clutter.ActorAlign.CENTER});
        this._badge = makeBadge(this._shell, this._guard);
        box.add_child(this._icon);
        box.add_child(this._badge);
        this._button.add_child(box);
        this._lines = [];
        this._items = [];
        this._shell.addToPanel(ROLE, this._button);
    }

    /** The middle button is a click of its own; the others open the menu. */
    _pressed(event) {
        const {Clutter} = this._shell;
        if (event.type() !== Clutter.EventType.BUTTON_PRESS || event.get_button() !== MIDDLE_BUTTON)
            return Clutter.EVENT_PROPAGATE;
        this._tell('', '');
        return Clutter.EVENT_STOP;
    }

    /** Items stay as long as the menu keeps its shape: one may be about to be clicked. */
    _showLines(lines) {
        const isSame = lines.length === this._lines.length &&
            lines.every(({kind, key}, i) => kind === this._lines[i].kind && key === this._lines[i].key);
        if (!isSame) {
            this._button.menu.removeAll();
            let choices = this._button.menu;
            this._items = lines.map((line, i) => {
                const item = this._makeItem(line, i);
                (line.kind === 'choice' ? choices : this._button.menu).addMenuItem(item);
                if (line.kind === 'menu') choices = item.menu;
                return item;
            });
        }
        this._lines = lines;
        this._items.forEach((item, i) => this._fill(item, lines[i]));
    }

    _makeItem({kind}, place) {
        const {St, PopupMenu} = this._shell;
        const click = this._guard(() => this._clicked(place));
        let item;
        switch (kind) {
        case 'separator':
            return new PopupMenu.PopupSeparatorMenuItem();
        case 'menu':
            return new PopupMenu.PopupSubMenuMenuItem('', false);
        case 'toggle':
            item = new PopupMenu.PopupSwitchMenuItem('', false);
            item.connect('toggled', click);
            return item;
        case 'action':
        case 'window':
        case 'choice':
            item = new PopupMenu.PopupMenuItem('');
            item.connect('activate', click);
            return item;
        case 'header':
            item = new PopupMenu.PopupMenuItem('', {reactive: false, can_focus: false});
            item.label.style = 'font-size: 85%; font-weight: bold;';
            return item;
        default:
            item = new PopupMenu.PopupMenuItem('', INFORMS);
            if (Object.hasOwn(DOTS, kind)) {
                const dot = new St.Icon({icon_name: 'media-record-symbolic', style_class: 'popup-menu-icon'});
                dot.style = `color: ${DOTS[kind]};`;
                item.insert_child_below(dot, item.label);
            }
            return item;
        }
    }

    _fill(item, {kind, text, isOn}) {
        const {Ornament} = this._shell.PopupMenu;
        if (kind !== 'separator') item.label.text = text;
        if (kind === 'toggle') item.setToggleState(isOn);
        if (kind === 'choice') item.setOrnament(isOn ? Ornament.DOT : Ornament.NONE);
    }

    _clicked(place) {
        const line = this._lines[place];
        this._fill(this._items[place], line); // the program says what comes of it
        this._tell(line.key, line.kind === 'window' ? this._makeToken() : '');
    }

    /** Without one the window may open behind others. */
    _makeToken() {
        try {
            return this._shell.makeToken();
        } catch (error) {
            logError(error, 'Hopsel');
            return '';
        }
    }
}
