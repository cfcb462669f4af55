// A button of the top bar with its menu.
import {Actor} from 'resource:///org/gnome/shell/actors.js';
import {PopupMenu} from 'resource:///org/gnome/shell/ui/popupMenu.js';

export class Button extends Actor {
    menu = new PopupMenu();
}
