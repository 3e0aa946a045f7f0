// Makes the manual, one page for the browser, of a Markdown file. Of Markdown it knows what the files in docs/ use:
// headings, paragraphs, lists with one level, tables, code by indentation, pictures, links, strong, emphasis and code.
//   make_manual TEMPLATE SOURCE RESULT

#include <cstdio>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>

namespace {

using namespace Qt::StringLiterals;

const QRegularExpression Heading(u"^(#{1,3}) (.*)$"_s);
const QRegularExpression Numbered(u"^\\d+\\. (.*)$"_s);
const QRegularExpression Bullet(u"^- (.*)$"_s);
const QRegularExpression Rule(u"^\\|[ :|-]+\\|$"_s);

// What leads out of the manual's own folder is not there for who reads the manual.
bool IsInManual(const QString &target) {
  return !target.startsWith("../"_L1) && !target.startsWith(u'/');
}

// The name that a heading can be linked by: the way code hosts make them.
QString AnchorOf(const QString &heading) {
  QString anchor;
  for (const QChar c : heading.toLower()) {
    if (c.isLetterOrNumber() || c == u'-') anchor += c;
    if (c == u' ') anchor += u'-';
  }
  return anchor;
}

QString Inline(const QString &text) {
  static const QRegularExpression parts(
      u"`([^`]+)`|!\\[([^\\]]*)\\]\\(([^)]+)\\)|\\[([^\\]]+)\\]\\(([^)]+)\\)|\\*\\*(.+?)\\*\\*|\\*([^*]+)\\*"_s);
  QString html;
  qsizetype end = 0;
  for (auto matches = parts.globalMatch(text); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    html += text.mid(end, match.capturedStart() - end).toHtmlEscaped();
    end = match.capturedEnd();
    if (match.hasCaptured(1)) {
      html += u"<code>%1</code>"_s.arg(match.captured(1).toHtmlEscaped());
    } else if (match.hasCaptured(3)) {
      html +=
          u"<img src=\"%1\" alt=\"%2\">"_s.arg(match.captured(3).toHtmlEscaped(), match.captured(2).toHtmlEscaped());
    } else if (match.hasCaptured(5)) {
      const QString target = match.captured(5);
      const QString words = Inline(match.captured(4));
      html += IsInManual(target) ? u"<a href=\"%1\">%2</a>"_s.arg(target.toHtmlEscaped(), words) : words;
    } else if (match.hasCaptured(6)) {
      html += u"<strong>%1</strong>"_s.arg(Inline(match.captured(6)));
    } else {
      html += u"<em>%1</em>"_s.arg(Inline(match.captured(7)));
    }
  }
  return html + text.mid(end).toHtmlEscaped();
}

class TManual final {
 public:
  explicit TManual(const QString &source) {
    for (const QString &line : source.split(u'\n')) Take(line);
    EndBlock();
  }

  QString title;
  QString contents;
  QString body;

 private:
  enum class TKind { None, Paragraph, Numbered, Bullets, Code, Table };

  void Take(const QString &line) {
    if (const auto match = Heading.match(line); match.hasMatch()) return TakeHeading(match);
    if (line.trimmed().isEmpty()) {
      m_afterBlank = true;
      return;
    }
    const bool isInList = m_kind == TKind::Numbered || m_kind == TKind::Bullets;
    if (const auto match = Numbered.match(line); match.hasMatch()) return TakeItem(TKind::Numbered, match.captured(1));
    if (const auto match = Bullet.match(line); match.hasMatch()) return TakeItem(TKind::Bullets, match.captured(1));
    if (isInList && line.startsWith(u' ')) {
      m_lines.last() += u' ' + line.trimmed();
      m_afterBlank = false;
      return;
    }
    if (line.startsWith("    "_L1) && (m_kind == TKind::Code || m_afterBlank))
      return TakeLine(TKind::Code, line.mid(4));
    if (line.startsWith(u'|')) return TakeLine(TKind::Table, line.trimmed());
    if (m_afterBlank) EndBlock();
    TakeLine(TKind::Paragraph, line.trimmed());
  }
  void TakeHeading(const QRegularExpressionMatch &match) {
    EndBlock();
    const int level = int(match.capturedLength(1));
    const QString text = match.captured(2);
    const QString anchor = AnchorOf(text);
    if (level == 1 && title.isEmpty()) title = text;
    if (level == 2) contents += u"<li><a href=\"#%1\">%2</a></li>\n"_s.arg(anchor, Inline(text));
    body += u"<h%1 id=\"%2\">%3</h%1>\n"_s.arg(QString::number(level), anchor, Inline(text));
  }
  void TakeItem(TKind kind, const QString &text) { TakeLine(kind, text); }
  void TakeLine(TKind kind, const QString &text) {
    if (m_kind != kind) EndBlock();
    // A blank line within code belongs to it.
    if (kind == TKind::Code && m_kind == kind && m_afterBlank) m_lines.append(QString());
    m_kind = kind;
    m_lines.append(text);
    m_afterBlank = false;
  }
  void EndBlock() {
    switch (m_kind) {
      case TKind::None:
        break;
      case TKind::Paragraph:
        body += u"<p>%1</p>\n"_s.arg(Inline(m_lines.join(u' ')));
        break;
      case TKind::Numbered:
        body += u"<ol>\n%1</ol>\n"_s.arg(Items());
        break;
      case TKind::Bullets:
        body += u"<ul>\n%1</ul>\n"_s.arg(Items());
        break;
      case TKind::Code:
        body += u"<pre>%1</pre>\n"_s.arg(m_lines.join(u'\n').toHtmlEscaped());
        break;
      case TKind::Table:
        body += u"<table>\n%1</table>\n"_s.arg(TableRows());
        break;
    }
    m_kind = TKind::None;
    m_lines.clear();
    m_afterBlank = false;
  }
  [[nodiscard]] QString Items() const {
    QString items;
    for (const QString &line : m_lines) items += u"<li>%1</li>\n"_s.arg(Inline(line));
    return items;
  }
  [[nodiscard]] QString TableRows() const {
    QString rows;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
      if (Rule.match(m_lines[i]).hasMatch()) continue;
      const QString cell = i == 0 ? u"<th>%1</th>"_s : u"<td>%1</td>"_s;
      rows += u"<tr>"_s;
      for (const QString &text : m_lines[i].mid(1).chopped(1).split(u'|')) rows += cell.arg(Inline(text.trimmed()));
      rows += u"</tr>\n"_s;
    }
    return rows;
  }

  TKind m_kind = TKind::None;
  QStringList m_lines;
  bool m_afterBlank = true;
};

}  // namespace

int main(int argc, char **argv) {
  if (argc != 4) {
    std::fputs("make_manual TEMPLATE SOURCE RESULT\n", stderr);
    return 2;
  }
  QFile frame(QFile::decodeName(argv[1]));
  QFile source(QFile::decodeName(argv[2]));
  QFile result(QFile::decodeName(argv[3]));
  if (!frame.open(QIODevice::ReadOnly) || !source.open(QIODevice::ReadOnly)) {
    std::fprintf(stderr, "%s or %s cannot be read\n", argv[1], argv[2]);
    return 1;
  }
  const TManual manual(QString::fromUtf8(source.readAll()));
  QString html = QString::fromUtf8(frame.readAll());
  html.replace("{{Title}}"_L1, manual.title.toHtmlEscaped());
  html.replace("{{Contents}}"_L1, manual.contents);
  html.replace("{{Body}}"_L1, manual.body);
  if (!result.open(QIODevice::WriteOnly) || result.write(html.toUtf8()) < 0 || !result.flush()) {
    std::fprintf(stderr, "%s cannot be written\n", argv[3]);
    return 1;
  }
  return 0;
}
