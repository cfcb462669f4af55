// The entry for GNOME 45 and later, whose extensions are modules.
import Clutter from 'gi://Clutter';
import Meta from 'gi://Meta';
import Shell from 'gi://Shell';
import St from 'gi://St';

import {Extension, InjectionManager} from 'resource:///org/gnome/shell/extensions/extension.js';
import {getIBusManager} from 'resource:///org/gnome/shell/misc/ibusManager.js';
import {InputMethod} from 'resource:///org/gnome/shell/misc/inputMethod.js';
import * as Main from 'resource:///org/gnome/shell/ui/main.js';
import * as PanelMenu from 'resource:///org/gnome/shell/ui/panelMenu.js';
import * as PopupMenu from 'resource:///org/gnome/shell/ui/popupMenu.js';
import {getInputSourceManager} from 'resource:///org/gnome/shell/ui/status/keyboard.js';

import {Hopsel} from './body/hopsel.js';
import {partsOf} from './body/shell.js';

/** The input method of the field in front has each key before anybody else, and may keep it. */
function overrideKeyFilter(swallows) {
    const injections = new InjectionManager();
    injections.overrideMethod(InputMethod.prototype, 'vfunc_filter_key_event', original => function (event) {
        return swallows(event) === true || original.call(this, event);
    });
    return () => injections.clear();
}

export default class HopselExtension extends Extension {
    enable() {
        const shell = partsOf({Clutter, Meta, Shell, St, Main, PanelMenu, PopupMenu, getInputSourceManager,
            getIBusManager, overrideKeyFilter});
        this._hopsel = new Hopsel(shell, this.dir, this.metadata['version-name']);
        this._hopsel.enable();
    }

    disable() {
        this._hopsel?.disable();
        this._hopsel = null;
    }
}
