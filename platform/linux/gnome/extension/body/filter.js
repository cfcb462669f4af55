// Swallows exactly the combinations that it was given, told apart by the sides of their modifiers.
//
// Made by the extension when it is enabled; asked by `Keys` with each ordinary key. The shell knows no sides, so nothing
// stays reserved: when key and held keys are exactly those of a combination, the shell is asked for that key in the very
// moment, finds it when it looks for its own shortcuts right after, and forgets it once the key is up. What the shell
// holds itself it does not give away: that is how it is known to be taken.
import GLib from 'gi://GLib';

import {wordsOf} from './modifiers.js';

const X_OFFSET = 8;
/** A key that no keyboard has, with all that can be held. */
const PROBE = '<Super><Alt><Shift><Control>0xf8';

export class Filter {
    /** Whether the shell still gives keys away, and takes them back. */
    static isUsable(shell) {
        if (typeof shell.display?.grab_accelerator !== 'function' || typeof shell.allowKeybinding !== 'function')
            return false;
        const action = shell.display.grab_accelerator(PROBE, 0);
        return action !== 0 && shell.display.ungrab_accelerator(action);
    }

    /**
     * @param {object} shell - Clutter, display, nameOfAction, allowKeybinding and forgetKeybinding of the shell
     * @param {Function} guard - wraps a callback so that what it throws never reaches the shell
     * @param {Function} isPassword - whether a password is being typed
     */
    constructor(shell, guard, isPassword) {
        this._shell = shell;
        this._guard = guard;
        this._isPassword = isPassword;
        this._wanted = new Set();
        this._down = new Map(); // what the shell calls each key that is swallowed; null where it was not asked
        this._up = new Set(); // those of them that are not down any more
        this._idle = 0;
    }

    close() {
        this._wanted.clear();
        this.release();
    }

    /** Takes these and no others, and answers with the places in the list of those that the shell holds. */
    set(combinations) {
        this._wanted = new Set(combinations.map(([place, held]) => `${place} ${held}`));
        return combinations.flatMap(([place, held], index) => {
            if (this._down.get(place)) return []; // the shell's answer would be about what it holds for us
            const action = this._shell.display.grab_accelerator(`${wordsOf(held)}0x${(place + X_OFFSET).toString(16)}`, 0);
            if (action !== 0) this._shell.display.ungrab_accelerator(action);
            return action === 0 ? [index] : [];
        });
    }

    /** 'swallowed' or 'passed'. `isFilter`: the event ends here by itself. */
    decide(place, held, isPress, isRepeat, event, isFilter) {
        if (isPress && isRepeat) return this._down.has(place) ? 'swallowed' : 'passed';
        if (!isPress) {
            if (!this._down.has(place)) return 'passed';
            // The shell still has to find what it looks for with this event.
            this._up.add(place);
            this._idle ||= GLib.idle_add(GLib.PRIORITY_HIGH, this._guard(() => {
                this._idle = 0;
                this._giveBack([...this._up]);
                return GLib.SOURCE_REMOVE;
            }));
            return 'swallowed';
        }
        this._giveBack([...this._up]);
        if (!this._wanted.has(`${place} ${held}`) || this._isPassword()) return 'passed';
        const action = isFilter ? null : this._grab(place, event);
        if (action === 0) return 'passed'; // taken
        this._down.set(place, action);
        return 'swallowed';
    }

    /** Gives back whatever it has, down or not. */
    release() {
        if (this._idle) GLib.source_remove(this._idle);
        this._idle = 0;
        this._giveBack([...this._down.keys()]);
    }

    _grab(place, event) {
        const {ModifierType} = this._shell.Clutter;
        // What the keys do in this keymap, which need not be what is printed on them.
        const state = event.get_state();
        const words = [[ModifierType.SHIFT_MASK, '<Shift>'], [ModifierType.CONTROL_MASK, '<Control>'],
            [ModifierType.MOD1_MASK, '<Alt>'], [ModifierType.MOD3_MASK, '<Mod3>'], [ModifierType.MOD4_MASK, '<Super>'],
            [ModifierType.MOD5_MASK, '<Mod5>']].filter(([mask]) => state & mask).map(([, word]) => word);
        const action = this._shell.display.grab_accelerator(`${words.join('')}0x${(place + X_OFFSET).toString(16)}`, 0);
        if (action !== 0) this._shell.allowKeybinding(this._shell.nameOfAction(action));
        return action;
    }

    _giveBack(places) {
        for (const place of places) {
            const action = this._down.get(place);
            this._down.delete(place);
            this._up.delete(place);
            if (!action) continue;
            const name = this._shell.nameOfAction(action);
            this._shell.display.ungrab_accelerator(action);
            this._shell.forgetKeybinding(name);
        }
    }
}
