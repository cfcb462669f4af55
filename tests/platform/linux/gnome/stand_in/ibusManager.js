// IBus, whose engine is in force only when the test says so.
import {Signals} from 'resource:///org/gnome/shell/signals.js';

class Bus extends Signals {
    engine = 'xkb:us::eng';

    get_global_engine_async(timeout, cancellable, callback) {
        Promise.resolve().then(() => callback(this, null));
    }

    get_global_engine_async_finish() {
        return {get_name: () => this.engine};
    }

    tell(engine) {
        this.engine = engine;
        this.emit('global-engine-changed', engine);
    }
}

class IBusManager extends Signals {
    _ready = true;

    _ibus = new Bus();

    getEngineDesc(id) {
        return id === 'hangul' ? {get_language: () => 'ko'} : null;
    }
}

const manager = new IBusManager();

export function getIBusManager() {
    return manager;
}
