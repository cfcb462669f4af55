// modern_entry_test.js <resource of the stand-in> <folder of the extension>
//
// The entry for GNOME 45 and later and the body behind it, in a shell that is played: when a source counts as current,
// what is answered to whom, and that nothing stays behind. Run on a session bus of its own.
import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import System from 'system';

const [resource, path] = ARGV;
Gio.Resource.load(resource)._register();
const folder = Gio.File.new_for_path(path);
const {default: Extension} = await import(folder.get_child('extension.js').get_uri());
const {getInputSourceManager} = await import('resource:///org/gnome/shell/ui/status/keyboard.js');
const {getIBusManager} = await import('resource:///org/gnome/shell/misc/ibusManager.js');
const manager = getInputSourceManager();
const ibus = getIBusManager();
const bus = Gio.DBus.session;
const told = [];
let failures = 0;

function expect(what, value, expected) {
    if (JSON.stringify(value) === JSON.stringify(expected)) return;
    printerr(`${what}: ${JSON.stringify(value)}, not ${JSON.stringify(expected)}`);
    failures++;
}

/** What is answered, or the last word of the error. */
function call(method, ...ids) {
    const args = ids.length ? new GLib.Variant('(s)', ids) : null;
    return new Promise(resolve => {
        bus.call('app.hopsel.Shell', '/app/hopsel/Shell', 'app.hopsel.Shell1', method, args, null,
            Gio.DBusCallFlags.NO_AUTO_START, 10000, null, (connection, result) => {
                try {
                    resolve(connection.call_finish(result).recursiveUnpack());
                } catch (error) {
                    resolve(Gio.DBusError.get_remote_error(error).split('.').pop());
                }
            });
    });
}

/** Asks for the source, and goes on once the shell has been told. */
async function begin(id) {
    const activated = new Promise(resolve => (manager.onActivated = resolve));
    const answer = call('Activate', id);
    await activated;
    return {answer};
}

bus.signal_subscribe(null, 'app.hopsel.Shell1', null, null, null, Gio.DBusSignalFlags.NONE,
    (connection, sender, object, iface, signal, args) => told.push([signal, ...args.recursiveUnpack()]));
const ours = () => manager.handlers.size + ibus.handlers.size + ibus._ibus.handlers.size;
const extension = new Extension({'version-name': '1.2.3'}, folder);
extension.enable();

expect('before registering', await call('Activate', 'xkb:ru'), 'Busy');
expect('registered', await call('Register'), ['1.2.3', {switch: true},
    [['xkb', 'us', 'us shown', ''], ['xkb', 'ru', 'ru shown', ''], ['ibus', 'hangul', 'hangul shown', 'ko']], 'xkb:us']);
expect('a layout for a layout needs no engine', await call('Activate', 'xkb:ru'), []);

// In force when IBus says so, and not before.
let isAnswered = false;
const {answer: hangul} = await begin('ibus:hangul');
hangul.then(() => (isAnswered = true));
const [, , , current] = await call('Register');
expect('while IBus works', [isAnswered, current], [false, 'xkb:ru']);
ibus._ibus.tell('hangul');
expect('when it is done', await hangul, []);

// A second wish overtakes the first, whose engine comes all the same.
const {answer: first} = await begin('xkb:us');
const {answer: second} = await begin('ibus:hangul');
ibus._ibus.tell('xkb:us::eng');
ibus._ibus.tell('hangul');
expect('overtaken and done', [await first, await second], ['Replaced', []]);

// While a password is typed the shell has no engines; they have not been removed.
const all = manager.inputSources;
manager._disableIBus = true;
manager.inputSources = {0: all[0], 1: all[1]};
manager.emit('sources-changed');
expect('put aside', await call('Activate', 'ibus:hangul'), 'NotNow');
manager._disableIBus = false;
manager.emit('sources-changed');
expect('removed', await call('Activate', 'ibus:hangul'), 'NotFound');
manager.inputSources = all;
manager.emit('sources-changed');

// IBus dies in the middle.
expect('in force already', await call('Activate', 'ibus:hangul'), []);
ibus._ibus.tell('xkb:us::eng');
const {answer: lost} = await begin('ibus:hangul');
ibus.emit('ready', false);
expect('lost', await lost, 'Lost');

// What throws is told, and goes no further.
all[1].activate = () => {
    throw new Error('played');
};
expect('fault', await call('Activate', 'xkb:ru'), 'Failed');
expect('still there', (await call('Register'))[0], '1.2.3');

extension.disable();
expect('left behind', ours(), 0);
expect('disabled', await call('Register'), 'NameHasNoOwner');
extension.disable();

// Neither the overtaken source nor the lost one was ever in force.
expect('told', told.map(([signal, what]) => (signal === 'SourcesChanged' ? what.length : what)),
    ['xkb:ru', 'ibus:hangul', 2, 3, 'Error: played']);
System.exit(failures ? 1 : 0);
