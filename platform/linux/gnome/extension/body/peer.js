// The extension's place on the session bus, and the one program that it talks to.
//
// Made when the extension is enabled, closed when it is disabled. Nothing is told to anybody but the peer, which is the
// first program that registers, until it leaves the bus. What a call holds is checked against the interface's
// description before it gets here.
import Gio from 'gi://Gio';
import GLib from 'gi://GLib';

const NAME = 'app.hopsel.Shell';
const PATH = '/app/hopsel/Shell';
const INTERFACE = 'app.hopsel.Shell1';
const CALLS_PER_SECOND = 300;

export class Peer {
    /**
     * @param {string} description - the interface as XML
     * @param {Function} guard - wraps a callback so that what it throws never reaches the shell
     * @param {object} answers - by method: called with the arguments, `reply(variant)` and `fail(error)`;
     *     and `gone`, called when the peer has left
     */
    constructor(description, guard, answers) {
        this._guard = guard;
        this._answers = answers;
        this._peer = null;
        this._watch = 0;
        this._second = 0;
        this._calls = 0;
        const methods = {};
        for (const method of ['Register', 'Activate', 'Listen', 'Filter', 'Show'])
            methods[`${method}Async`] = (args, invocation) => this._called(method, args, invocation);
        this._object = Gio.DBusExportedObject.wrapJSObject(description, methods);
        this._object.export(Gio.DBus.session, PATH);
        this._name = Gio.bus_own_name_on_connection(Gio.DBus.session, NAME, Gio.BusNameOwnerFlags.DO_NOT_QUEUE,
            null, null);
    }

    close() {
        this._forget();
        Gio.bus_unown_name(this._name);
        this._object.unexport();
    }

    /** To the peer, if there is one. */
    tell(signal, variant) {
        if (this._peer) Gio.DBus.session.emit_signal(this._peer, PATH, INTERFACE, signal, variant);
    }

    _called(method, args, invocation) {
        let isAnswered = false;
        const fail = (error, text = error) => {
            if (!isAnswered) invocation.return_dbus_error(`${INTERFACE}.Error.${error}`, text);
            isAnswered = true;
        };
        const reply = variant => {
            if (!isAnswered) invocation.return_value(variant);
            isAnswered = true;
        };
        const sender = invocation.get_sender();
        const second = Math.floor(GLib.get_monotonic_time() / 1e6);
        this._calls = second === this._second ? this._calls + 1 : 1;
        this._second = second;
        if (this._calls > CALLS_PER_SECOND) {
            fail('TooMany');
        } else if (this._peer ? sender !== this._peer : method !== 'Register') {
            fail('Busy');
        } else {
            if (!this._peer) this._accept(sender);
            this._guard(() => this._answers[method](args, reply, fail), () => fail('Failed'))();
        }
    }

    _accept(sender) {
        this._peer = sender;
        this._watch = Gio.bus_watch_name_on_connection(Gio.DBus.session, sender, Gio.BusNameWatcherFlags.NONE, null,
            this._guard(() => {
                this._forget();
                this._answers.gone();
            }));
    }

    _forget() {
        if (this._watch) Gio.bus_unwatch_name(this._watch);
        this._watch = 0;
        this._peer = null;
    }
}
