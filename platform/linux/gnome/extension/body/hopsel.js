// What the extension does, whichever version of the shell it runs in: the entry hands over the shell's own objects,
// which old and new shells keep in different places.
//
// Made once by the entry. Between `enable` and `disable` it listens; before and after it has nothing in the shell.
import GLib from 'gi://GLib';

import {Peer} from './peer.js';
import {Sources} from './sources.js';

const SOURCES = 'a(ssss)';

export class Hopsel {
    /**
     * @param {object} shell - inputSourceManager and ibusManager of the shell
     * @param {Gio.File} folder - the extension's
     * @param {string} version - the extension's
     */
    constructor(shell, folder, version) {
        this._shell = shell;
        this._folder = folder;
        this._version = version;
    }

    enable() {
        const [, description] = this._folder.get_child('app.hopsel.Shell1.xml').load_contents(null);
        const guard = this._guard.bind(this);
        this._peer = new Peer(new TextDecoder().decode(description), guard, {
            Register: (args, reply) => this._register(reply),
            Activate: (args, reply, fail) => this._activate(args[0], reply, fail),
            gone: () => {},
        });
        try {
            if (Sources.isUsable(this._shell)) {
                this._sources = new Sources(this._shell, guard, {
                    sources: list => this._peer.tell('SourcesChanged', new GLib.Variant(`(${SOURCES})`, [list])),
                    current: id => this._peer.tell('CurrentChanged', new GLib.Variant('(s)', [id])),
                });
            }
        } catch (error) {
            logError(error, 'Hopsel: no input sources');
        }
    }

    disable() {
        this._sources?.close();
        this._sources = null;
        this._peer?.close();
        this._peer = null;
    }

    _register(reply) {
        reply(new GLib.Variant(`(sa{sb}${SOURCES}s)`, [
            this._version, {switch: Boolean(this._sources)}, this._sources?.list ?? [], this._sources?.current ?? '',
        ]));
    }

    _activate(id, reply, fail) {
        if (this._sources) this._sources.activate(id, () => reply(new GLib.Variant('()', [])), fail);
        else fail('NotFound');
    }

    /** Nothing that goes wrong here may end up in the shell: it is logged and told. */
    _guard(callback, onFault = () => {}) {
        return (...args) => {
            try {
                return callback(...args);
            } catch (error) {
                logError(error, 'Hopsel');
                onFault();
                this._peer?.tell('Fault', new GLib.Variant('(s)', [`${error}`]));
                return undefined;
            }
        };
    }
}
