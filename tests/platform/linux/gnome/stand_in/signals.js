// Signals as the shell's own objects have them.
export class Signals {
    handlers = new Map();

    connect(signal, callback) {
        this._last = (this._last ?? 0) + 1;
        this.handlers.set(this._last, {signal, callback});
        return this._last;
    }

    disconnect(id) {
        if (!this.handlers.delete(id)) throw new Error(`no handler ${id}`);
    }

    emit(signal, ...args) {
        for (const handler of [...this.handlers.values()])
            if (handler.signal === signal) handler.callback(this, ...args);
    }
}
