// What the shell's parts are found through.
import {InputMethod} from 'resource:///org/gnome/shell/misc/inputMethod.js';

export const inputMethod = new InputMethod();
export const wm = {
    _allowedKeybindings: {},

    allowKeybinding(name, modes) {
        this._allowedKeybindings[name] = modes;
    },
};
