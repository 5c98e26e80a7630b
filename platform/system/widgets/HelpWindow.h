#pragma once

#include "platform/system/HelpViewer.h"

#include <QString>
#include <QWidget>

class QTextBrowser;

namespace pluvarine {

// The help viewer: a window that shows a topic of a help file, addressed as
// "<folder>/Tectaro.chm::/Pluvarine.htm". The help file is a folder of HTML pages and their
// pictures; the part after "::" names the page inside it. A missing help file or page is
// reported in the window itself. The browser is made with the first page or problem shown: a
// window never opened costs next to nothing.
class HelpWindow : public QWidget, public HelpViewer {
    Q_OBJECT
public:
    explicit HelpWindow(QWidget* parent = nullptr);

    void HtmlHelp(const std::string& fileAndTopic) override;

    // What the window shows: the page's local file, or empty while it shows a message.
    QString shownPage() const { return m_shownPage; }
    // Null until the window has shown something.
    QTextBrowser* browser() const { return m_browser; }

private:
    QTextBrowser* madeBrowser();
    void showProblem(const QString& title, const QString& text);

    QTextBrowser* m_browser = nullptr;
    QString m_shownPage;
};

} // namespace pluvarine
