// What the extension uses of the shell, by names that do not change with the shell's versions. Most of it is promised by
// nobody: each part looks for what it needs before it is used.
//
// Called by the entry, which knows where its shell keeps its modules. Holds nothing itself.

import Gio from 'gi://Gio';

/** @param {object} modules - Clutter, Meta, Shell, St, Main, PanelMenu, PopupMenu, getInputSourceManager, getIBusManager
 *     and, where input methods see keys first, overrideKeyFilter */
export function partsOf(modules) {
    const {Clutter, Meta, Shell, St, Main, PanelMenu, PopupMenu} = modules;
    const {EventFlags, InputContentPurpose} = Clutter;
    return {
        Clutter,
        // Named in this way or that from version to version.
        flags: {
            inputMethod: EventFlags?.INPUT_METHOD ?? EventFlags?.FLAG_INPUT_METHOD,
            repeated: EventFlags?.REPEATED ?? EventFlags?.FLAG_REPEATED,
        },
        inputSourceManager: modules.getInputSourceManager(),
        ibusManager: modules.getIBusManager(),
        overrideKeyFilter: modules.overrideKeyFilter,
        display: global.display,
        windowTracker: Shell.WindowTracker?.get_default?.(),
        idleMonitor: global.backend?.get_core_idle_monitor?.(),
        nameOfAction: action => Meta.external_binding_name_for_action(action),
        allowKeybinding: name => Main.wm.allowKeybinding(name, Shell.ActionMode.ALL),
        forgetKeybinding: name => {
            if (Main.wm._allowedKeybindings) delete Main.wm._allowedKeybindings[name];
        },
        St,
        PanelMenu,
        PopupMenu,
        addToPanel: (name, button) => Main.panel.addToStatusArea(name, button),
        /** With which a window that somebody else opens may have the focus. */
        makeToken: () => {
            const program = Gio.AppInfo.create_from_commandline('hopsel', 'Hopsel',
                Gio.AppInfoCreateFlags.SUPPORTS_STARTUP_NOTIFICATION);
            return global.create_app_launch_context(global.get_current_time(), -1)
                .get_startup_notify_id(program, []) ?? '';
        },
        knowsPasswords: Number.isInteger(InputContentPurpose?.PASSWORD) &&
            Number.isInteger(Main.inputMethod?.content_purpose) && 'currentFocus' in Main.inputMethod,
        isPassword: () => Boolean(Main.inputMethod?.currentFocus) &&
            Main.inputMethod.content_purpose === InputContentPurpose?.PASSWORD,
    };
}
