#pragma once

#include <QDialog>

class QTableWidget;

namespace pluvarine {

class TectaroHost;

// The host's parts list window: the list of every downpipe of the open project and the totals
// per article and material, shown afresh whenever the project's elements change, with an
// export to CSV. Texts from the string table.
class PartsListDialog : public QDialog {
    Q_OBJECT
public:
    explicit PartsListDialog(TectaroHost& host, QWidget* parent = nullptr);

    QTableWidget& table() { return *m_table; }
    void refresh();

private:
    void askExport();

    TectaroHost& m_host;
    QTableWidget* m_table = nullptr;
};

} // namespace pluvarine
