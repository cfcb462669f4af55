// The input method, which has every key of a text field before anybody else; it keeps none.
export class InputMethod {
    currentFocus = {};

    content_purpose = 0;

    seen = 0;

    vfunc_filter_key_event() {
        this.seen++;
        return false;
    }
}
