// What the shell's parts are found through.
import {InputMethod} from 'resource:///org/gnome/shell/misc/inputMethod.js';

export const inputMethod = new InputMethod();
export const wm = {
    _allowedKeybindings: {},

    allowKeybinding(name, modes) {
        this._allowedKeybindings[name] = modes;
    },
};
export const panel = {
    statusArea: {},

    addToStatusArea(role, button) {
        this.statusArea[role] = button;
        button.connect('destroy', () => delete this.statusArea[role]);
    },
};
