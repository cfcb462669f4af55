// Hears the keyboard and the mouse in the shell, and tells no more of it than lone taps and combinations need.
//
// Made by the extension when it is enabled, closed when it is disabled; hears only between `listen(true)` and
// `listen(false)`. The shell calls whoever waits for the user to be active with each event, before its own shortcuts
// and before any program; the event is the current one then. Of an ordinary key nothing is told but that there was one
// while a modifier was held, and only the first since the last change of modifiers.
import GLib from 'gi://GLib';

import {modifierOf} from './modifiers.js';

/** What X adds to the kernel's numbers of keys, which the shell has them by. */
const X_OFFSET = 8;
const MOST_KEYS = 64;
/** Of the shell, in milliseconds: an event that claims more has its time from elsewhere. */
const LONGEST_DELAY = 60000;

export class Keys {
    /** Whether this shell has everything that is used here, none of which it promises. */
    static isUsable(shell) {
        const type = shell.Clutter?.EventType;
        return typeof shell.idleMonitor?.add_user_active_watch === 'function' &&
            typeof shell.idleMonitor.remove_watch === 'function' &&
            typeof shell.Clutter?.get_current_event === 'function' &&
            [type?.KEY_PRESS, type?.KEY_RELEASE, type?.BUTTON_PRESS, type?.SCROLL, shell.flags.inputMethod,
                shell.flags.repeated].every(Number.isInteger);
    }

    /**
     * @param {object} shell - Clutter, flags and idleMonitor of the shell, and overrideKeyFilter where input methods
     *     see keys before anybody else
     * @param {Function} guard - wraps a callback so that what it throws never reaches the shell
     * @param {Function} tell - called with what, key, held and the time in microseconds: see the signal Key
     * @param {object} filter - asked about each press and release of an ordinary key
     */
    constructor(shell, guard, tell, filter) {
        this._shell = shell;
        this._guard = guard;
        this._tell = tell;
        this._filter = filter;
        this._watch = 0;
        this._held = new Map(); // the modifier that each key counted as when it went down
        this._isQuiet = false; // what would be told has been
        this._seen = '';
    }

    close() {
        this.listen(false);
    }

    /** Also starts over with no key held. */
    listen(isOn) {
        this._held.clear();
        this._isQuiet = false;
        if (isOn && !this._watch) {
            this._arm();
            this._restore = this._shell.overrideKeyFilter?.(this._guard(event => this._see(event, true)));
        } else if (!isOn && this._watch) {
            this._shell.idleMonitor.remove_watch(this._watch);
            this._watch = 0;
            this._restore?.();
            this._restore = null;
            this._filter.release();
        }
    }

    /** As one bit for each of the eight. */
    get held() {
        let bits = 0;
        for (const modifier of this._held.values()) bits |= 1 << modifier;
        return bits;
    }

    _arm() {
        const rearm = this._guard(() => {
            if (!this._watch) return;
            this._watch = this._shell.idleMonitor.add_user_active_watch(rearm);
            this._see(this._shell.Clutter.get_current_event(), false);
        });
        this._watch = this._shell.idleMonitor.add_user_active_watch(rearm);
    }

    /** True where the event is to go no further, which only an input method's filter can see to. */
    _see(event, isFilter) {
        const {EventType} = this._shell.Clutter;
        const type = event?.type();
        switch (type) {
        case EventType.KEY_PRESS:
        case EventType.KEY_RELEASE: {
            const flags = event.get_flags();
            if (flags & this._shell.flags.inputMethod) return false; // came back from an input method: seen already
            const isPress = type === EventType.KEY_PRESS;
            const isRepeat = isPress && (flags & this._shell.flags.repeated) !== 0;
            const mark = `${event.get_time()} ${type} ${event.get_key_code()} ${isRepeat}`;
            if (this._shell.overrideKeyFilter && mark === this._seen) return this._wasSwallowed;
            this._seen = mark;
            return (this._wasSwallowed = this._key(event, isPress, isRepeat, isFilter));
        }
        case EventType.BUTTON_PRESS:
        case EventType.TOUCH_BEGIN:
            this._other('button', event);
            break;
        case EventType.SCROLL:
            this._other('scroll', event);
            break;
        default:
        }
        return false;
    }

    _key(event, isPress, isRepeat, isFilter) {
        const place = event.get_key_code() - X_OFFSET;
        const modifier = this._held.get(place) ?? modifierOf(place, event.get_key_symbol());
        if (modifier === null) return this._ordinary(event, place, isPress, isRepeat, isFilter);
        if (isRepeat) return false;
        const before = this.held;
        if (isPress && this._held.size < MOST_KEYS) this._held.set(place, modifier);
        else if (!isPress) this._held.delete(place);
        // Two keys that count as one modifier make one press, with the first, and one release, with the last.
        if (this.held === before) return false;
        this._isQuiet = false;
        this._tell(isPress ? 'down' : 'up', modifier, this.held, this._timeOf(event));
        return false;
    }

    _ordinary(event, place, isPress, isRepeat, isFilter) {
        const verdict = this._filter.decide(place, this.held, isPress, isRepeat, event, isFilter);
        if (verdict === 'passed') {
            if (isPress) this._other('key', event);
            return false;
        }
        if (!isRepeat) this._tell(isPress ? 'swallowed' : 'released', place, this.held, this._timeOf(event));
        return true;
    }

    _other(what, event) {
        if (this._held.size === 0 || this._isQuiet) return;
        this._isQuiet = true;
        this._tell(what, 0, this.held, this._timeOf(event));
    }

    /**
     * The moment of the event itself: the shell may have been busy since, and then a tap would last as long. Up to
     * GNOME 43 only motion has microseconds; all have milliseconds, which wrap around.
     */
    _timeOf(event) {
        const now = GLib.get_monotonic_time();
        const time = event.get_time_us?.() ?? 0;
        if (time > now - LONGEST_DELAY * 1000 && time <= now) return time;
        const nowInMilliseconds = Math.floor(now / 1000);
        const delay = (nowInMilliseconds - event.get_time()) >>> 0;
        return delay < LONGEST_DELAY ? (nowInMilliseconds - delay) * 1000 : now;
    }
}
