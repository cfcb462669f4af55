// Which of the eight modifier keys a key is: left and right of Command (Super), Option (Alt), Shift and Control, by
// their numbers in app.hopsel.Shell1.xml.
//
// The keymap's word counts where it names one of the eight; else the key's place does. AltGr and the Korean keys stand
// where right Alt and right Control are. Pure.

/** By the kernel's numbers of keys. */
const PLACES = new Map([[125, 0], [126, 1], [56, 2], [100, 3], [42, 4], [54, 5], [29, 6], [97, 7], [122, 3], [123, 7]]);

const SYMBOLS = new Map([
    [0xffeb, 0], [0xffec, 1], // Super
    [0xffe9, 2], [0xffea, 3], // Alt
    [0xffe7, 2], [0xffe8, 3], // Meta, which is Alt with Shift held
    [0xffe1, 4], [0xffe2, 5], // Shift
    [0xffe3, 6], [0xffe4, 7], // Control
]);

/** What an extra key is; they do not rename one of the eight. */
const DUTIES = new Map([[0xfe03, 3], [0xff31, 3], [0xff34, 7]]); // Level 3, Hangul, Hanja

/** Caps, Shift, Num and Scroll Lock: such a key is no modifier any more. */
const LOCKS = new Set([0xffe5, 0xffe6, 0xff7f, 0xff14]);

/** The number of the modifier, or null. */
export function modifierOf(place, symbol) {
    if (SYMBOLS.has(symbol)) return SYMBOLS.get(symbol);
    if (LOCKS.has(symbol)) return null;
    return PLACES.get(place) ?? DUTIES.get(symbol) ?? null;
}

/** Mutter's words for the modifiers of a set of bits, as a key's name begins with them. */
export function wordsOf(bits) {
    return ['<Super>', '<Alt>', '<Shift>', '<Control>'].filter((word, family) => bits & (3 << 2 * family)).join('');
}

const COMMAND_OR_CONTROL = 0b11000011;
/** By the kernel's numbers, from and to: what types text, and what is a function key (Print and its neighbours, too). */
const TYPING = [[2, 13], [16, 27], [30, 41], [43, 53], [55, 55], [71, 83], [86, 86],
    [89, 89], [98, 98], [117, 118], [121, 121], [124, 124], [179, 180]];
const FUNCTION = [[59, 68], [70, 70], [87, 88], [99, 99], [119, 119], [183, 194]];

function isIn(ranges, place) {
    return ranges.some(([first, last]) => place >= first && place <= last);
}

/** Whoever could name plain keys would be told what is typed. */
export function mayBeSwallowed([place, held]) {
    if (place < 1 || place > 247 || held > 0xff) return false;
    if (held & COMMAND_OR_CONTROL) return true;
    return held === 0 ? isIn(FUNCTION, place) : !isIn(TYPING, place);
}
