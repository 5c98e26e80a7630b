#include "platform/tectaro/widgets/PartsListDialog.h"

#include "platform/tectaro/ProjectPartsList.h"
#include "platform/tectaro/TectaroHost.h"
#include "store/text/LoadText.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <set>

namespace pluvarine {

namespace {
// Diameter, angle, nominal length, quantity, cut length, total length.
const std::set<std::size_t> kNumberColumns{3, 4, 5, 7, 8, 9};
QString text(int id) {
    return QString::fromStdString(LoadText(id));
}
ProjectPartsList listOf(const TectaroHost& host) {
    return host.project() ? ProjectPartsList::of(*host.project()) : ProjectPartsList{};
}
} // namespace

PartsListDialog::PartsListDialog(TectaroHost& host, QWidget* parent)
    : QDialog(parent), m_host(host) {
    setObjectName(QStringLiteral("tectaroPartsListWindow"));
    setWindowTitle(text(9000));
    m_table = new QTableWidget(this);
    m_table->setObjectName(QStringLiteral("partsListTable"));
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->verticalHeader()->hide();
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* exportButton = buttons->addButton(text(9014), QDialogButtonBox::ActionRole);
    exportButton->setObjectName(QStringLiteral("partsListExport"));
    QPushButton* close = buttons->addButton(text(9015), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("partsListClose"));
    connect(exportButton, &QPushButton::clicked, this, &PartsListDialog::askExport);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::hide);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_table);
    layout->addWidget(buttons);
    connect(&host, &TectaroHost::elementsChanged, this, &PartsListDialog::refresh);
    connect(&host, &TectaroHost::projectChanged, this, &PartsListDialog::refresh);
    refresh();
    m_table->horizontalHeader()->setStretchLastSection(true);
    // Wide enough for every column as the list first shows, within a common screen.
    int width = 0;
    for (int c = 0; c < m_table->columnCount(); ++c) {
        width += m_table->columnWidth(c);
    }
    resize(std::min(width + 60, 1500), 520);
}

void PartsListDialog::refresh() {
    const auto cells = listOf(m_host).cells();
    const auto& header = cells.front();
    m_table->clear();
    m_table->setColumnCount(static_cast<int>(header.size()));
    m_table->setRowCount(static_cast<int>(cells.size() - 1));
    QStringList labels;
    for (const auto& cell : header) {
        labels << QString::fromStdString(cell);
    }
    m_table->setHorizontalHeaderLabels(labels);
    const int totalsFrom = m_table->rowCount() - static_cast<int>(listOf(m_host).totals.size());
    for (std::size_t r = 1; r < cells.size(); ++r) {
        const int row = static_cast<int>(r - 1);
        for (std::size_t c = 0; c < cells[r].size(); ++c) {
            auto* item = new QTableWidgetItem(QString::fromStdString(cells[r][c]));
            if (kNumberColumns.contains(c)) {
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            }
            if (row >= totalsFrom) {
                QFont bold = item->font();
                bold.setBold(true);
                item->setFont(bold);
            }
            m_table->setItem(row, static_cast<int>(c), item);
        }
    }
    m_table->resizeColumnsToContents();
}

void PartsListDialog::askExport() {
    QString file = QFileDialog::getSaveFileName(this, text(9014), QStringLiteral("parts.csv"),
                                                QStringLiteral("CSV (*.csv);;All files (*)"));
    if (file.isEmpty()) {
        return;
    }
    std::string error;
    if (!listOf(m_host).writeCsv(file.toStdString(), &error)) {
        QMessageBox::warning(this, text(9000), QString::fromStdString(error));
    }
}

} // namespace pluvarine
