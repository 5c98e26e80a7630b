#include "platform/system/widgets/HelpWindow.h"

#include <QDir>
#include <QFileInfo>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace pluvarine {

HelpWindow::HelpWindow(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName(QStringLiteral("helpWindow"));
    setWindowTitle(tr("Help"));
    resize(780, 600);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

QTextBrowser* HelpWindow::madeBrowser() {
    if (m_browser) {
        return m_browser;
    }
    m_browser = new QTextBrowser(this);
    m_browser->setObjectName(QStringLiteral("helpBrowser"));
    m_browser->setOpenExternalLinks(true);
    layout()->addWidget(m_browser);
    connect(m_browser, &QTextBrowser::sourceChanged, this, [this](const QUrl& url) {
        m_shownPage = url.toLocalFile();
        const QString title = m_browser->documentTitle();
        setWindowTitle(title.isEmpty() ? tr("Help") : title);
    });
    return m_browser;
}

void HelpWindow::HtmlHelp(const std::string& fileAndTopic) {
    const QString address = QString::fromStdString(fileAndTopic);
    const qsizetype separator = address.indexOf(QStringLiteral("::"));
    const QString file = separator < 0 ? address : address.left(separator);
    QString topic = separator < 0 ? QString() : address.mid(separator + 2);
    while (topic.startsWith(QLatin1Char('/')) || topic.startsWith(QLatin1Char('\\')))
        topic.remove(0, 1);

    const QFileInfo help(file);
    QString page;
    if (!help.exists()) {
        showProblem(tr("Help file not found"),
                    tr("The help file %1 cannot be found.").arg(QDir::toNativeSeparators(file)));
        return;
    }
    if (help.isDir()) {
        if (topic.isEmpty()) {
            showProblem(tr("No topic"), tr("No topic of the help file %1 was asked for.")
                                            .arg(QDir::toNativeSeparators(file)));
            return;
        }
        page = QDir(file).filePath(topic);
    } else if (topic.isEmpty()) {
        page = file; // a single page
    } else {
        showProblem(tr("Help file cannot be read"),
                    tr("The help file %1 is not a folder of pages, so the topic %2 cannot be "
                       "shown.")
                        .arg(QDir::toNativeSeparators(file), topic));
        return;
    }
    if (!QFileInfo(page).isFile()) {
        showProblem(tr("Topic not found"), tr("The topic %1 cannot be found in the help file %2.")
                                               .arg(topic, QDir::toNativeSeparators(file)));
        return;
    }
    // A problem text replaces the document but not the browser's address: the page shown before
    // it must be loaded again, not taken as already on screen.
    const QUrl url = QUrl::fromLocalFile(QFileInfo(page).absoluteFilePath());
    madeBrowser();
    if (m_browser->source() == url) {
        m_browser->reload();
    } else {
        m_browser->setSource(url);
    }
    m_shownPage = url.toLocalFile();
    const QString title = m_browser->documentTitle();
    setWindowTitle(title.isEmpty() ? tr("Help") : title);
    show();
    raise();
    activateWindow();
}

void HelpWindow::showProblem(const QString& title, const QString& text) {
    m_shownPage.clear();
    madeBrowser()->setHtml(
        QStringLiteral("<h2>%1</h2><p>%2</p>").arg(title.toHtmlEscaped(), text.toHtmlEscaped()));
    setWindowTitle(title);
    show();
    raise();
    activateWindow();
}

} // namespace pluvarine
