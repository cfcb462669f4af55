// Which application's window has the focus, by the names that it goes by.
//
// Made by the extension when it is enabled, and closed when it is disabled.
const LONGEST = 255;

export class Front {
    /** Whether this shell has everything that is used here. */
    static isUsable(shell) {
        return typeof shell.display?.connect === 'function' && typeof shell.windowTracker?.get_window_app === 'function';
    }

    /**
     * @param {object} shell - display and windowTracker of the shell
     * @param {Function} guard - wraps a callback so that what it throws never reaches the shell
     * @param {Function} tell - called with the names whenever another window has the focus
     */
    constructor(shell, guard, tell) {
        this._shell = shell;
        this._handler = shell.display.connect('notify::focus-window', guard(() => tell(this.names)));
    }

    close() {
        this._shell.display.disconnect(this._handler);
    }

    /** The surest first; none where no window has the focus. What programs say of themselves is cut. */
    get names() {
        const window = this._shell.display.focus_window;
        if (!window) return [];
        const file = this._shell.windowTracker.get_window_app(window)?.get_id() ?? '';
        const names = [
            window.get_gtk_application_id?.(),
            file.startsWith('window:') ? '' : file.replace(/\.desktop$/, ''), // a number: of a window without a file
            window.get_wm_class?.(),
            window.get_wm_class_instance?.(),
        ];
        return names.filter(Boolean).map(name => name.slice(0, LONGEST));
    }
}
