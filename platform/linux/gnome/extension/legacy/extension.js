// The entry for GNOME 43 and 44, whose extensions are scripts. The body is a module also here, and so arrives a
// moment after the extension was enabled; it may have been disabled again by then.
const {Clutter, Meta, Shell, St} = imports.gi;
const {getCurrentExtension} = imports.misc.extensionUtils;
const {getIBusManager} = imports.misc.ibusManager;
const Main = imports.ui.main;
const PanelMenu = imports.ui.panelMenu;
const PopupMenu = imports.ui.popupMenu;
const {getInputSourceManager} = imports.ui.status.keyboard;

class HopselExtension {
    constructor(me) {
        this._me = me;
        this._isEnabled = false;
        this._hopsel = null;
    }

    enable() {
        this._isEnabled = true;
        const body = this._me.dir.get_child('body');
        const load = file => import(body.get_child(file).get_uri());
        Promise.all([load('hopsel.js'), load('shell.js')]).then(([{Hopsel}, {partsOf}]) => {
            if (!this._isEnabled || this._hopsel) return;
            const shell = partsOf({Clutter, Meta, Shell, St, Main, PanelMenu, PopupMenu, getInputSourceManager,
                getIBusManager});
            this._hopsel = new Hopsel(shell, this._me.dir, this._me.metadata['version-name']);
            this._hopsel.enable();
        }).catch(error => logError(error, 'Hopsel'));
    }

    disable() {
        this._isEnabled = false;
        this._hopsel?.disable();
        this._hopsel = null;
    }
}

/* exported init */
function init() {
    return new HopselExtension(getCurrentExtension());
}
