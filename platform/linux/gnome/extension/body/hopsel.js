// What the extension does, whichever version of the shell it runs in: the entry hands over the shell's own objects,
// which old and new shells keep in different places.
//
// Made once by the entry. Between `enable` and `disable` it listens; before and after it has nothing in the shell.
import GLib from 'gi://GLib';

import {Filter} from './filter.js';
import {Front} from './front.js';
import {Indicator, mayBeShown} from './indicator.js';
import {Keys} from './keys.js';
import {mayBeSwallowed} from './modifiers.js';
import {Peer} from './peer.js';
import {Sources} from './sources.js';

const SOURCES = 'a(ssss)';
const MOST_COMBINATIONS = 64;
/** Asks for nothing, where there is no filter. */
const PASSING = {decide: () => 'passed', release() {}};

export class Hopsel {
    /**
     * @param {object} shell - what partsOf makes of the shell
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
            Listen: (args, reply, fail) => this._listen(args[0], reply, fail),
            Filter: (args, reply, fail) => this._setFilter(args[0], reply, fail),
            Show: (args, reply, fail) => this._show(args, reply, fail),
            gone: () => this._rest(),
        });
        this._sources = this._probe(Sources, () => new Sources(this._shell, guard, {
            sources: list => this._peer.tell('SourcesChanged', new GLib.Variant(`(${SOURCES})`, [list])),
            current: id => this._peer.tell('CurrentChanged', new GLib.Variant('(s)', [id])),
        }));
        this._front = this._probe(Front, () => new Front(this._shell, guard, names => this._tellFront(names)));
        this._filter = this._probe(Filter, () => new Filter(this._shell, guard, () => this._shell.isPassword()));
        this._keys = this._probe(Keys, () => new Keys(this._shell, guard,
            (...event) => this._tellKey(event), this._filter ?? PASSING));
        this._indicator = this._probe(Indicator, () => new Indicator(this._shell, guard,
            (key, token) => this._peer.tell('Clicked', new GLib.Variant('(ss)', [key, token]))));
    }

    disable() {
        this._indicator?.close();
        this._keys?.close();
        this._filter?.close();
        this._front?.close();
        this._sources?.close();
        this._peer?.close();
        this._indicator = this._keys = this._filter = this._front = this._sources = this._peer = null;
    }

    /** What this shell lacks, or does otherwise than is known, is told as a capability that is missing. */
    _probe(part, make) {
        try {
            return part.isUsable(this._shell) ? make() : null;
        } catch (error) {
            logError(error, 'Hopsel');
            return null;
        }
    }

    /** Nobody is there to be told. */
    _rest() {
        this._indicator?.close();
        this._keys?.listen(false);
        this._filter?.set([]);
    }

    /** Each key is told after what the program has to know to judge it. */
    _tellKey(event) {
        const isPassword = this._shell.isPassword();
        if (isPassword !== this._isPassword) this._peer.tell('Password', new GLib.Variant('(b)', [isPassword]));
        this._isPassword = isPassword;
        this._peer.tell('Key', new GLib.Variant('(suux)', event));
    }

    _tellFront(names) {
        this._peer.tell('FrontChanged', new GLib.Variant('(as)', [names]));
    }

    _register(reply) {
        reply(new GLib.Variant(`(sa{sb}${SOURCES}s)`, [
            this._version, {
                switch: Boolean(this._sources), taps: Boolean(this._keys),
                combinations: Boolean(this._keys && this._filter), passwords: this._shell.knowsPasswords,
                front: Boolean(this._front), indicator: Boolean(this._indicator),
            }, this._sources?.list ?? [], this._sources?.current ?? '',
        ]));
        if (this._front) this._tellFront(this._front.names);
    }

    _activate(id, reply, fail) {
        if (this._sources) this._sources.activate(id, () => reply(new GLib.Variant('()', [])), fail);
        else fail('NotFound');
    }

    _listen(isOn, reply, fail) {
        if (!this._keys) {
            fail('Lacking');
            return;
        }
        this._isPassword = null; // not told yet
        this._keys.listen(isOn);
        reply(new GLib.Variant('()', []));
    }

    _setFilter(combinations, reply, fail) {
        if (!this._keys || !this._filter) fail('Lacking');
        else if (combinations.length > MOST_COMBINATIONS || !combinations.every(mayBeSwallowed)) fail('Refused');
        else reply(new GLib.Variant('(au)', [this._filter.set(combinations)]));
    }

    _show([name, symbol, labels, current, lines], reply, fail) {
        if (!this._indicator) {
            fail('Lacking');
        } else if (!mayBeShown(symbol, labels, current, lines)) {
            fail('Refused');
        } else {
            this._indicator.show(name, symbol, labels, current, lines);
            reply(new GLib.Variant('()', []));
        }
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
