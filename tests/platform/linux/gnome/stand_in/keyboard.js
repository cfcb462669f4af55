// The shell's sources: us, ru and hangul.
import {Signals} from 'resource:///org/gnome/shell/signals.js';

class Manager extends Signals {
    constructor() {
        super();
        this.inputSources = {};
        [['xkb', 'us'], ['xkb', 'ru'], ['ibus', 'hangul']].forEach(([type, id], index) => {
            const source = {type, id, index, displayName: `${id} shown`};
            source.activate = () => {
                this.currentSource = source;
                this.emit('current-source-changed', null);
                this.onActivated?.(id);
            };
            this.inputSources[index] = source;
        });
        this.currentSource = this.inputSources[0];
    }
}

const manager = new Manager();

export function getInputSourceManager() {
    return manager;
}
