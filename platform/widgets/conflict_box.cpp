#include "platform/widgets/conflict_box.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "platform/widgets/qt_text.h"

namespace QvPlatform {

ConflictBox::ConflictBox(QWidget* parent, const QString& title, std::span<const ConflictRow> rows)
    : QDialog(parent) {
  setObjectName("conflictBox");
  setWindowTitle(title);
  auto* column = new QVBoxLayout(this);
  auto* text = new QLabel(
      Translated("Another user has changed this object since you opened it. Nothing is saved yet."),
      this);
  text->setWordWrap(true);
  column->addWidget(text);
  column->addWidget(MakeTable(rows), 1);
  auto* line = new QHBoxLayout;
  line->addStretch(1);
  AddButton(line, "btnTakeTheirs", Translated("Take &theirs"), ConflictAnswer::kTakeTheirs);
  AddButton(line, "btnKeepMine", Translated("Keep &mine"), ConflictAnswer::kKeepMine);
  AddButton(line, "btnGoBack", Translated("&Go back"), ConflictAnswer::kGoBack);
  column->addLayout(line);
  const auto button = [this](const char* name) { return findChild<QPushButton*>(name); };
  button("btnTakeTheirs")
      ->setToolTip(Translated("The fields above get the other user's values. You save them then."));
  button("btnKeepMine")->setToolTip(Translated("Save your values over the other user's."));
  button("btnGoBack")->setToolTip(Translated("Save nothing and look at the fields first."));
  button("btnGoBack")->setDefault(true);
  button("btnGoBack")->setFocus();
  resize(fontMetrics().averageCharWidth() * 90, sizeHint().height());
}

QTableWidget* ConflictBox::MakeTable(std::span<const ConflictRow> rows) {
  auto* table = new QTableWidget(static_cast<int>(rows.size()), 4, this);
  table->setObjectName("tableConflicts");
  table->setAccessibleName(Translated("Fields that differ"));
  table->setHorizontalHeaderLabels(
      {Translated("Field"), Translated("Before"), Translated("Theirs"), Translated("Mine")});
  table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
  table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  table->verticalHeader()->hide();
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionMode(QAbstractItemView::NoSelection);
  table->setTabKeyNavigation(false);
  int at = 0;
  for (const ConflictRow& row : rows) {
    int place = 0;
    for (const std::string& text : {row.caption, row.before, row.theirs, row.mine}) {
      auto* item = new QTableWidgetItem(ToQt(text));
      item->setToolTip(QStringLiteral("<qt>%1</qt>").arg(ToQt(text).toHtmlEscaped()));
      table->setItem(at, place++, item);
    }
    ++at;
  }
  return table;
}

void ConflictBox::AddButton(QHBoxLayout* line, const char* objectName, const QString& caption,
                            ConflictAnswer answer) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(QString::fromLatin1(objectName));
  button->setAutoDefault(answer == ConflictAnswer::kGoBack);
  connect(button, &QPushButton::clicked, this, [this, answer] {
    answer_ = answer;
    accept();
  });
  line->addWidget(button);
}

}  // namespace QvPlatform
