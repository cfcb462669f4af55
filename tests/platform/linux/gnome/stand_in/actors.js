// What the shell draws with, as far as it can be played without drawing.
import {Signals} from 'resource:///org/gnome/shell/signals.js';

export class Actor extends Signals {
    children = [];

    add_child(child) {
        this.children.push(child);
    }

    insert_child_below(child) {
        this.children.unshift(child);
    }

    queue_repaint() {}

    destroy() {
        this.emit('destroy');
    }
}
