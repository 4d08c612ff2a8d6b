// Help texts: from rich text to a page of HTML.
#include "windows/HelpText.h"

#include <algorithm>

#include "files/DiskFile.h"

namespace ladderwise {

namespace {

constexpr std::size_t LargestHelpFile = 4u << 20;  ///< bytes; what lies beyond is not read

QString Escaped(const std::string& text) {
    return QString::fromStdString(text).toHtmlEscaped().replace('\n', "<br/>").replace('\t', ' ');
}

QString HtmlOf(const RtfRun& run) {
    QString html = Escaped(run.Text);
    const auto wrap = [&html](bool on, const char* tag) {
        if (on) html = QString("<%1>%2</%1>").arg(QLatin1String(tag), html);
    };
    wrap(run.Code, "code");
    wrap(run.Bold, "b");
    wrap(run.Italic, "i");
    wrap(run.Underline && run.Link.empty(), "u");
    wrap(run.Script > 0, "sup");
    wrap(run.Script < 0, "sub");
    if (run.Link.empty()) return html;
    return QString("<a href=\"%1\">%2</a>").arg(Escaped(run.Link), html);
}

QString HtmlOf(const std::vector<RtfRun>& runs) {
    QString html;
    for (const RtfRun& run : runs)
        html += HtmlOf(run);
    return html;
}

/// What stands around neighbouring blocks of one kind.
std::pair<const char*, const char*> Enclosure(RtfBlockKind kind) {
    switch (kind) {
        case RtfBlockKind::ListItem:
            return {"<ul>", "</ul>"};
        case RtfBlockKind::TableRow:
            return {
                "<table border=\"1\" cellspacing=\"0\" cellpadding=\"5\" style=\"border-collapse:"
                " collapse; margin-top: 6px; margin-bottom: 10px\">",
                "</table>"};
        case RtfBlockKind::Paragraph:
        case RtfBlockKind::Heading:
            break;
    }
    return {"", ""};
}

QString HtmlOf(const RtfBlock& block, const QString& anchors) {
    switch (block.Kind) {
        case RtfBlockKind::Heading:
            return QString("<h%1>%2%3</h%1>")
                .arg(std::min(block.Level + 1, 5))
                .arg(anchors, HtmlOf(block.Cells[0]));
        case RtfBlockKind::ListItem:
            return QString("<li>%1%2</li>").arg(anchors, HtmlOf(block.Cells[0]));
        case RtfBlockKind::TableRow: {
            const char* const tag = block.Level > 0 ? "th align=\"left\"" : "td";
            const char* const end = block.Level > 0 ? "th" : "td";
            QString row = "<tr>";
            for (const std::vector<RtfRun>& cell : block.Cells)
                row += QString("<%1>%2</%3>")
                           .arg(QLatin1String(tag), HtmlOf(cell), QLatin1String(end));
            return row + "</tr>";
        }
        case RtfBlockKind::Paragraph:
            break;
    }
    return QString("<p>%1%2</p>").arg(anchors, HtmlOf(block.Cells[0]));
}

HelpText ProblemPage(const QString& name, const QString& folder, const QString& problem) {
    HelpText page;
    page.Title = "Help not found";
    page.Problem = problem;
    page.Html = QString(
                    "<h2>This page of the help cannot be shown</h2><p>%1</p><p>The help text "
                    "\"%2\" belongs into the folder<br/><code>%3</code></p><p>Installing the "
                    "program again puts it there. Everything else works without it.</p>")
                    .arg(problem.toHtmlEscaped(), name.toHtmlEscaped(), folder.toHtmlEscaped());
    return page;
}

}  // namespace

HelpText HelpTextOf(const RtfDocument& document) {
    HelpText page;
    page.Title = QString::fromStdString(document.Title);
    RtfBlockKind open = RtfBlockKind::Paragraph;
    for (const RtfBlock& block : document.Blocks) {
        if (block.Kind != open) page.Html += QLatin1String(Enclosure(open).second);
        if (block.Kind != open) page.Html += QLatin1String(Enclosure(block.Kind).first);
        open = block.Kind;
        QString anchors;
        for (const std::string& bookmark : block.Bookmarks)
            anchors += QString("<a name=\"%1\"></a>").arg(Escaped(bookmark));
        const QString text = QString::fromStdString(block.PlainText()).simplified();
        if (block.Kind == RtfBlockKind::Heading) {
            const QString anchor = QString("h%1").arg(page.Headings.size());
            anchors += QString("<a name=\"%1\"></a>").arg(anchor);
            page.Headings.push_back({block.Level, text, anchor});
        }
        page.Html += HtmlOf(block, anchors);
        page.Plain += text + '\n';
    }
    page.Html += QLatin1String(Enclosure(open).second);
    return page;
}

HelpText LoadHelpText(const QString& folder, const QString& name) {
    const std::string path = (folder + '/' + name).toStdString();
    const FileContent content = ReadWholeFile(path, LargestHelpFile);
    if (!content.Error.empty())
        return ProblemPage(name, folder, QString::fromStdString(content.Error));
    const RtfDocument document = ReadRtf(content.Bytes);
    if (!document.IsRtf) return ProblemPage(name, folder, "The file is no rich text.");
    HelpText page = HelpTextOf(document);
    if (page.Plain.trimmed().isEmpty()) return ProblemPage(name, folder, "The file has no text.");
    if (page.Title.isEmpty()) page.Title = name;
    return page;
}

}  // namespace ladderwise
