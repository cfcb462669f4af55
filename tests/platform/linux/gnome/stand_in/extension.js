// The base of extensions and what they change the shell with, as far as ours uses them.
export class Extension {
    constructor(metadata, dir) {
        this.metadata = metadata;
        this.dir = dir;
    }
}

export class InjectionManager {
    changed = [];

    overrideMethod(prototype, name, make) {
        const original = prototype[name];
        this.changed.push(() => (prototype[name] = original));
        prototype[name] = make(original);
    }

    clear() {
        for (const restore of this.changed) restore();
    }
}
