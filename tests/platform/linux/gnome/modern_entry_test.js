// modern_entry_test.js <resource of the stand-in> <folder of the extension>
//
// The entry for GNOME 45 and later and the body behind it, in a shell that is played: when a source counts as current,
// what is answered to whom, which keys are told and swallowed, and that nothing stays behind. Run on a session bus of
// its own.
import Clutter from 'gi://Clutter';
import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import System from 'system';

const [resource, path] = ARGV;
Gio.Resource.load(resource)._register();
globalThis.global = await import('resource:///org/gnome/shell/global.js');
const {display, idleMonitor} = globalThis.global;
const folder = Gio.File.new_for_path(path);
const {default: Extension} = await import(folder.get_child('extension.js').get_uri());
const {default: Shell} = await import('gi://Shell'); // after the extension: it brings the real shell's modules
const {default: St} = await import('gi://St');
const {Actor} = await import('resource:///org/gnome/shell/actors.js');
for (const drawn of ['BoxLayout', 'DrawingArea', 'Icon']) Object.defineProperty(St, drawn, {value: Actor}); // need a stage
Shell.WindowTracker = {get_default: () => ({get_window_app: () => null})}; // the real one needs a whole shell
const {getInputSourceManager} = await import('resource:///org/gnome/shell/ui/status/keyboard.js');
const {getIBusManager} = await import('resource:///org/gnome/shell/misc/ibusManager.js');
const {inputMethod, panel, wm} = await import('resource:///org/gnome/shell/ui/main.js');
const manager = getInputSourceManager();
const ibus = getIBusManager();
const bus = Gio.DBus.session;
const told = [];
const fronts = []; // again with each Register
let failures = 0;

function expect(what, value, expected) {
    if (JSON.stringify(value) === JSON.stringify(expected)) return;
    printerr(`${what}: ${JSON.stringify(value)}, not ${JSON.stringify(expected)}`);
    failures++;
}

/** What is answered, or the last word of the error. */
function call(method, argument) {
    const types = {Activate: '(s)', Listen: '(b)', Filter: '(a(uu))', Show: '(ssasua(ssbs))'};
    const args = argument === undefined ? null : new GLib.Variant(types[method], method === 'Show' ? argument : [argument]);
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
    (connection, sender, object, iface, signal, args) => (signal === 'FrontChanged' ? fronts : told).push([signal, ...args.recursiveUnpack()]));
const ours = () => manager.handlers.size + ibus.handlers.size + ibus._ibus.handlers.size + idleMonitor.watches.size +
    display.given.size + Object.keys(panel.statusArea).length + Object.keys(wm._allowedKeybindings).length;

/** What is told about keys: the kernel's numbers, negative when they go up. True for those that are swallowed. */
const symbols = {29: 0xffe3, 57: 0x20, 97: 0xffe4, 100: 0xffea};
let milliseconds = 0;
let busySince = null; // set, the shell comes late to the keys, and has milliseconds for them that wrap around
function type(...keys) {
    return keys.map(key => {
        const event = {
            type: () => (key > 0 ? Clutter.EventType.KEY_PRESS : Clutter.EventType.KEY_RELEASE),
            get_flags: () => 0,
            get_key_code: () => Math.abs(key) + 8,
            get_key_symbol: () => symbols[Math.abs(key)] ?? 0x61,
            get_state: () => Clutter.ModifierType.CONTROL_MASK,
            get_time: () => (busySince + milliseconds) >>> 0,
            get_time_us: () => (busySince === null ? GLib.get_monotonic_time() : 0),
        };
        milliseconds++;
        Clutter.get_current_event = () => event;
        const isSwallowed = inputMethod.vfunc_filter_key_event(event);
        if (!isSwallowed) idleMonitor.fire(); // in shells that tell the input method first
        return isSwallowed;
    });
}

/** What was told of keys since the last time, without their times; once all of it has arrived. */
async function toldOfKeys() {
    await call('Register');
    return told.splice(0).map(([signal, ...args]) => (signal === 'Key' ? args.slice(0, 3) : args[0]));
}
const extension = new Extension({'version-name': '1.2.3'}, folder);
extension.enable();

expect('before registering', await call('Activate', 'xkb:ru'), 'Busy');
expect('registered', await call('Register'), ['1.2.3',
    {switch: true, taps: true, combinations: true, passwords: true, front: true, indicator: true},
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

// Neither the overtaken source nor the lost one was ever in force.
expect('told', told.splice(0).map(([signal, what]) => (signal === 'SourcesChanged' ? what.length : what)),
    ['xkb:ru', 'ibus:hangul', 2, 3, 'Error: played']);

display.focus_window = null;
display.given.get('notify::focus-window')();
await call('Register');
expect('in front', [fronts[0][1], fronts.at(-1)[1]], [['played'], []]);

// Nothing is heard unless it is asked for; then once, however often the shell shows a key.
type(100, -100);
expect('not asked', await toldOfKeys(), []);
expect('asked', await call('Listen', true), []);
type(30, -30, 100, -100, 30, -30);
expect('a lone tap', await toldOfKeys(), [false, ['down', 3, 8], ['up', 3, 0]]);
type(100, 30, -30, 31, -31, -100);
expect('a key with it', await toldOfKeys(), [['down', 3, 8], ['key', 0, 8], ['up', 3, 0]]);

// A tap lasts as long as it did, whenever the shell comes to it.
busySince = Math.floor(GLib.get_monotonic_time() / 1000) - 5000;
const pressed = (busySince + milliseconds + 1) * 1000;
type(100, -100);
await call('Register');
expect('times', told.splice(0).map(([, , , , time]) => time), [pressed, pressed + 1000]);
busySince = null;

// Left Control+Space and no other; GNOME has Super+Space; what types text is nobody's.
expect('taken', await call('Filter', [[57, 1 << 6], [57, 1]]), [[1]]);
for (const typing of [[30, 0], [30, 1 << 4], [57, 0], [75, 1 << 2], [600, 1 << 6], [57, 1 << 8]])
    expect(`${typing}`, await call('Filter', [[57, 1 << 6], typing]), 'Refused');
expect('too many', await call('Filter', Array(65).fill([57, 1 << 6])), 'Refused');
expect('swallowed', type(29, 57, -57, -29), [false, true, true, false]);
expect('and told', await toldOfKeys(),
    [['down', 6, 64], ['swallowed', 57, 64], ['released', 57, 64], ['up', 6, 0]]);
expect('passed', type(97, 57, -57, -97, 29, 97, 57, -57, -97, -29).some(Boolean), false);
await toldOfKeys();
inputMethod.content_purpose = Clutter.InputContentPurpose.PASSWORD;
expect('a password', type(29, 57, -57, -29).some(Boolean), false);
expect('is told', await toldOfKeys(), [true, ['down', 6, 64], ['key', 0, 64], ['up', 6, 0]]);
inputMethod.content_purpose = 0;

// What throws while a key is looked at is told, and the next key is heard.
Clutter.get_current_event = () => {
    throw new Error('played');
};
idleMonitor.fire();
await call('Register');
expect('a fault', told.splice(0), [['Fault', 'Error: played']]);

// The menu is the program's, down to what a click does.
const lines = [['toggle', 'On', true, 't'], ['separator', '', false, ''], ['info', 'x'.repeat(300), false, ''],
    ['menu', 'More', false, ''], ['choice', 'One', true, 'c1'], ['choice', 'Two', false, 'c2'],
    ['window', 'Open', false, 'w'], ['problem', 'Bad', false, '']];
for (const [what, wrong] of Object.entries({
    symbol: ['', 'toString', [], 0, []], place: ['', 'keyboard', ['A'], 1, []],
    labels: ['', 'keyboard', ['A', 'B', 'C'], 0, []], kind: ['', 'keyboard', [], 0, [['script', '', false, '']]],
    length: ['', 'keyboard', [], 0, Array(257).fill(lines[0])],
})) expect(what, await call('Show', wrong), 'Refused');
expect('nothing yet', Object.keys(panel.statusArea), []);
expect('shown', await call('Show', ['Played', 'problem', ['ABCDEF', '한'], 1, lines]), []);
const [button] = Object.values(panel.statusArea);
const [toggle, , info, more, open] = button.menu.items;
expect('cut', [info.label.text.length, button.children[0].children[1].labels], [200, ['ABCD', '한']]);
expect('choices', more.menu.items.map(item => [item.label.text, item.ornament]), [['One', 1], ['Two', 0]]);
toggle.click();
open.emit('activate');
more.menu.items[1].emit('activate');
expect('stays as it was told', toggle.state, true);
lines[0][2] = false;
expect('shown again', await call('Show', ['Played', 'paused', [], 0, lines]), []);
expect('in place', [button.menu.items[0] === toggle, toggle.state], [true, false]);
expect('clicks', told.splice(0), [['Clicked', 't', ''], ['Clicked', 'w', 'played token'], ['Clicked', 'c2', '']]);
panel.addToStatusArea = () => {
    throw new Error('played');
};
button.destroy();
expect('no room', await call('Show', ['Played', 'paused', [], 0, lines]), 'Failed');
delete panel.addToStatusArea;
told.length = 0;

type(29, 57); // and goes while it holds a key
extension.disable();
expect('left behind', ours(), 0);
const {seen} = inputMethod;
type(-57, -29);
expect('not in the way', [inputMethod.seen - seen, told.length], [2, told.length]);
expect('disabled', await call('Register'), 'NameHasNoOwner');
extension.disable();
System.exit(failures ? 1 : 0);
