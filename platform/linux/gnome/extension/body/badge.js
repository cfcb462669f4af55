// Draws the labels of input sources, the current one filled with its letter cut out, in whatever colour the bar around
// it has.
//
// A child of the indicator, which it is destroyed with. The sizes are those that the program draws with elsewhere.
import Cairo from 'cairo';
import Pango from 'gi://Pango';
import PangoCairo from 'gi://PangoCairo';

const HEIGHT = 16;
const LETTERS = 11;
const LINE = 1.5;

export function widthOf(labels) {
    return labels.length > 1 ? 40 : 22;
}

/** An actor; `draw` may be given other labels later by `area.labels`, `area.current` and `area.queue_repaint()`. */
export function makeBadge(shell, guard) {
    const area = new shell.St.DrawingArea({y_align: shell.Clutter.ActorAlign.CENTER});
    area.labels = [];
    area.current = 0;
    area.connect('repaint', guard(() => {
        const context = area.get_context();
        try {
            draw(area, context);
        } finally {
            context.$dispose();
        }
    }));
    return area;
}

export function showLabels(area, labels, current) {
    area.labels = labels;
    area.current = current;
    area.style = `width: ${widthOf(labels)}px; height: ${HEIGHT}px;`;
    area.queue_repaint();
}

function draw(area, context) {
    const {labels, current} = area;
    const color = area.get_theme_node().get_foreground_color();
    context.setSourceRGBA(color.red / 255, color.green / 255, color.blue / 255, color.alpha / 255);
    const [, height] = area.get_surface_size();
    const unit = height / HEIGHT;
    const width = widthOf(labels) * unit;
    const edge = LINE / 2 * unit;
    const isPair = labels.length > 1;
    outline(context, edge, width - 2 * edge, height - 2 * edge, isPair ? height / 2 - edge : 4 * unit);
    if (isPair) {
        context.setLineWidth(LINE * unit);
        context.strokePreserve();
        context.clip();
        context.rectangle(current * width / 2, 0, width / 2, height);
    }
    context.fill();
    labels.forEach((label, place) => {
        const layout = area.create_pango_layout(label);
        const font = area.get_theme_node().get_font();
        font.set_weight(Pango.Weight.BOLD);
        font.set_absolute_size(LETTERS * unit * Pango.SCALE);
        layout.set_font_description(font);
        const [letters, lines] = layout.get_pixel_size();
        context.moveTo((place + 0.5) * width / labels.length - letters / 2, (height - lines) / 2);
        context.setOperator(place === current ? Cairo.Operator.DEST_OUT : Cairo.Operator.OVER);
        PangoCairo.show_layout(context, layout);
    });
}

/** Of the whole badge, with round corners. */
function outline(context, edge, width, height, radius) {
    const [left, top, right, bottom] = [edge + radius, edge + radius, edge + width - radius, edge + height - radius];
    context.newPath();
    context.arc(right, top, radius, -Math.PI / 2, 0);
    context.arc(right, bottom, radius, 0, Math.PI / 2);
    context.arc(left, bottom, radius, Math.PI / 2, Math.PI);
    context.arc(left, top, radius, Math.PI, Math.PI * 1.5);
    context.closePath();
}
