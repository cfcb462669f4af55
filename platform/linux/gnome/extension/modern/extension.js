// The entry for GNOME 45 and later, whose extensions are modules.
import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';
import {getIBusManager} from 'resource:///org/gnome/shell/misc/ibusManager.js';
import {getInputSourceManager} from 'resource:///org/gnome/shell/ui/status/keyboard.js';

import {Hopsel} from './body/hopsel.js';

export default class HopselExtension extends Extension {
    enable() {
        const shell = {inputSourceManager: getInputSourceManager(), ibusManager: getIBusManager()};
        this._hopsel = new Hopsel(shell, this.dir, this.metadata['version-name']);
        this._hopsel.enable();
    }

    disable() {
        this._hopsel?.disable();
        this._hopsel = null;
    }
}
