// The input sources of the shell: which there are, which is in force, and how to make another one so.
//
// Made by the extension when it is enabled, and closed when it is disabled. The shell tells that a source is current
// as soon as it has asked IBus for the source's engine; what is typed in that moment is still typed with the old one.
// Here a source is current once IBus has said that its engine is.

/** What the shell asks of IBus for a keyboard layout: engines that hand letters on as they are. */
const PLAIN_ENGINE = /^xkb:/;

function idOf(source) {
    return `${source.type}:${source.id}`;
}

export class Sources {
    /** Whether this shell has everything that is used here, none of which it promises. */
    static isUsable(shell) {
        const manager = shell.inputSourceManager;
        const bus = shell.ibusManager?._ibus;
        return typeof manager?.connect === 'function' && typeof manager.inputSources === 'object' &&
            Object.values(manager.inputSources).every(source => typeof source.activate === 'function') &&
            typeof bus?.connect === 'function' && typeof bus.get_global_engine_async === 'function';
    }

    /**
     * @param {object} shell - inputSourceManager and ibusManager of the shell
     * @param {Function} guard - wraps a callback so that what it throws never reaches the shell
     * @param {object} tell - `sources` and `current`, called with what has changed
     */
    constructor(shell, guard, tell) {
        this._manager = shell.inputSourceManager;
        this._ibus = shell.ibusManager;
        this._guard = guard;
        this._tell = tell;
        this._list = [];
        this._current = '';
        this._engine = null; // the one that IBus has told last
        this._asked = null; // the one that the shell has asked for last
        this._waiting = null; // {id, done, failed} of the last Activate
        this._handlers = [];
        this._connect(this._manager, 'sources-changed', () => this._readList());
        this._connect(this._manager, 'current-source-changed', () => this._follow());
        this._connect(this._ibus, 'ready', (manager, isReady) => this._ibusChanged(isReady));
        this._connect(this._ibus._ibus, 'global-engine-changed', (bus, engine) => this._engineChanged(engine));
        this._readList();
        this._askEngine();
    }

    close() {
        for (const [object, id] of this._handlers) object.disconnect(id);
        this._handlers = [];
        this._answer(null, 'Lost');
    }

    get list() {
        return this._list;
    }

    get current() {
        return this._current;
    }

    /** Calls `done` once the source is in force, or `failed` with the name of the error. */
    activate(id, done, failed) {
        const source = Object.values(this._manager.inputSources).find(candidate => idOf(candidate) === id);
        if (!source) {
            failed(this._list.some(([type, name]) => `${type}:${name}` === id) ? 'NotNow' : 'NotFound');
            return;
        }
        this._answer(null, 'Replaced');
        this._waiting = {id, done, failed};
        source.activate(true); // which the shell tells, also where it is the current one
    }

    _connect(object, signal, callback) {
        this._handlers.push([object, object.connect(signal, this._guard(callback))]);
    }

    _readList() {
        // A password is being typed: IBus's sources are put aside, not removed.
        if (this._manager._disableIBus) return;
        const list = Object.values(this._manager.inputSources).map(source => [
            source.type, source.id, source.displayName ?? '',
            this._ibus.getEngineDesc?.(source.id)?.get_language() ?? '',
        ]);
        if (JSON.stringify(list) === JSON.stringify(this._list)) return;
        this._list = list;
        this._tell.sources(list);
    }

    _engineOf(source) {
        return source.type === 'ibus' ? source.id : 'xkb:us::eng';
    }

    _isSame(one, other) {
        return one === other || PLAIN_ENGINE.test(one) && PLAIN_ENGINE.test(other);
    }

    _follow() {
        const source = this._manager.currentSource;
        if (!source) return;
        const wanted = this._engineOf(source);
        const isInDoubt = this._asked !== null && !this._isSame(this._asked, this._engine ?? '');
        this._asked = wanted;
        if (!this._ibus._ready || !isInDoubt && this._isSame(wanted, this._engine ?? '')) this._arrive(source);
        // What was asked for before may still come, or never will: nobody tells, so IBus is asked.
        else if (isInDoubt || this._engine === null) this._askEngine();
    }

    _askEngine() {
        if (!this._ibus._ready) {
            this._follow();
            return;
        }
        this._ibus._ibus.get_global_engine_async(-1, null, this._guard((bus, result) => {
            if (this._handlers.length === 0) return; // closed meanwhile
            let engine = null;
            try {
                engine = bus.get_global_engine_async_finish(result)?.get_name() ?? null;
            } catch {
                // IBus has no engine yet; it tells when it has.
            }
            if (engine) this._engineChanged(engine);
        }));
    }

    _engineChanged(engine) {
        this._engine = engine;
        const source = this._manager.currentSource;
        if (source && this._isSame(this._engineOf(source), engine)) this._arrive(source);
    }

    _ibusChanged(isReady) {
        this._engine = this._asked = null;
        if (!isReady && this._waiting?.id.startsWith('ibus:')) this._answer(null, 'Lost');
        if (isReady) this._askEngine();
    }

    _arrive(source) {
        const id = idOf(source);
        this._asked = this._engineOf(source);
        if (id !== this._current) {
            this._current = id;
            this._tell.current(id);
        }
        this._answer(id, 'Replaced');
    }

    _answer(id, error) {
        const waiting = this._waiting;
        this._waiting = null;
        if (waiting?.id === id) waiting.done();
        else waiting?.failed(error);
    }
}
