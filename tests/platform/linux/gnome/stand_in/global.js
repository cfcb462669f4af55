// What every script of the shell can reach: a display that gives keys away, except for those that it holds itself, and
// the watch for an active user.
export const display = {
    held: new Set(['<Super>0x41']),
    given: new Map(),
    last: 0,
    focus_window: {get_wm_class: () => 'played'},

    connect(signal, callback) {
        this.given.set(signal, callback);
        return signal;
    },

    disconnect(signal) {
        this.given.delete(signal);
    },

    grab_accelerator(accelerator) {
        if (this.held.has(accelerator) || [...this.given.values()].includes(accelerator)) return 0;
        this.given.set(++this.last, accelerator);
        return this.last;
    },

    ungrab_accelerator(action) {
        return this.given.delete(action);
    },
};

export const idleMonitor = {
    watches: new Map(),
    last: 0,

    add_user_active_watch(callback) {
        this.watches.set(++this.last, callback);
        return this.last;
    },

    remove_watch(id) {
        this.watches.delete(id);
    },

    /** The user is active: each watch is told once. */
    fire() {
        const due = [...this.watches.values()];
        this.watches.clear();
        for (const callback of due) callback();
    },
};

export const backend = {get_core_idle_monitor: () => idleMonitor};

export const get_current_time = () => 0;
export const create_app_launch_context = () => ({get_startup_notify_id: () => 'played token'});
