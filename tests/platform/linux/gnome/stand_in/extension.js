// The base of extensions, as far as ours uses it.
export class Extension {
    constructor(metadata, dir) {
        this.metadata = metadata;
        this.dir = dir;
    }
}
