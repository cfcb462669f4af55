// Menus and what is in them.
import {Actor} from 'resource:///org/gnome/shell/actors.js';

export const Ornament = {NONE: 0, DOT: 1};

export class PopupMenu {
    items = [];

    addMenuItem(item) {
        this.items.push(item);
    }

    removeAll() {
        this.items = [];
    }
}

export class PopupMenuItem extends Actor {
    label = new Actor();

    setOrnament(ornament) {
        this.ornament = ornament;
    }
}

export class PopupSeparatorMenuItem extends Actor {}

export class PopupSubMenuMenuItem extends PopupMenuItem {
    menu = new PopupMenu();
}

/** Turns by being clicked. */
export class PopupSwitchMenuItem extends PopupMenuItem {
    setToggleState(state) {
        this.state = state;
    }

    click() {
        this.state = !this.state;
        this.emit('toggled', this.state);
    }
}
