// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// What the window is made of, as widgetdescription.h puts it in words. Check boxes and lists show the
// values of a first start.

struct WidgetRow
{
    const char *name = "";
    const char *className = "";
    const char *place = "";
    const char *settings = "";
    const char *otherSettings = ""; // by their names alone
};

constexpr WidgetRow widgetTable[] = {
    {"centralwidget", "QWidget", "central widget", ""},
    {"frameMain", "QFrame", "verticalLayout[0]", "minimum=0x300; shape=StyledPanel; shadow=Raised"},
    {"frameMenu", "QFrame", "horizontalLayout_12[0]",
     "maximum=60x16777215; shape=StyledPanel; shadow=Raised"},
    {"logo", "QPushButton", "verticalLayout_10[0]", "icon size=26x26", "focusPolicy"},
    {"basicTabButton", "QToolButton", "verticalLayout_10[1]",
     "text=基础; icon size=24x24; checkable=true; checked=true; style=ToolButtonTextUnderIcon"},
    {"advancedTabButton", "QToolButton", "verticalLayout_10[2]",
     "text=高级; icon size=24x24; checkable=true; style=ToolButtonTextUnderIcon",
     "focusPolicy"}, // the group leaves the focus to the checked button
    {"headerFrame", "QFrame", "verticalLayout_9[0]",
     "minimum=0x40; shape=StyledPanel; shadow=Raised"},
    {"title_label", "QLabel", "horizontalLayout_9[0]", "text=Kestrelpack"},
    {"proTitle", "QLabel", "horizontalLayout_9[1]", ""},
    {"menuButton", "QPushButton", "horizontalLayout_9[3]", ""},
    {"minButton", "QPushButton", "horizontalLayout_9[4]", ""},
    {"closeButton", "QPushButton", "horizontalLayout_9[5]", ""},
    {"stackedWidget", "QStackedWidget", "verticalLayout_9[1]", ""},

    {"basicPage", "QWidget", "stackedWidget[0]", ""},
    {"frame_2", "QFrame", "verticalLayout_3[0]", "shape=StyledPanel; shadow=Raised"},
    {"folderLabel", "QLabel", "gridLayout_2 row 0 column 0", "text=源文件夹"},
    {"folderLineEdit", "QLineEdit", "gridLayout_2 row 0 column 1", ""},
    {"selectFolderButton", "QPushButton", "gridLayout_2 row 0 column 2", "text=选择"},
    {"outputLabel", "QLabel", "gridLayout_2 row 1 column 0", "text=输出位置"},
    {"outputLineEdit", "QLineEdit", "gridLayout_2 row 1 column 1", ""},
    {"outputButton", "QPushButton", "gridLayout_2 row 1 column 2", "text=选择"},
    {"label_4", "QLabel", "gridLayout_2 row 2 column 0", "text=主程序"},
    {"mainExeComboBox", "QComboBox", "gridLayout_2 row 2 column 1", ""},
    {"mainExeButton", "QPushButton", "gridLayout_2 row 2 column 2", "text=选择"},
    {"startButton", "QPushButton", "verticalLayout_3[1]", "text=开始制作; minimum=0x45"},
    {"logTextEdit", "QTextEdit", "verticalLayout_3[2]", "read-only=true",
     "undoRedoEnabled textInteractionFlags"},
    {"progressBar", "QProgressBar", "verticalLayout_3[3]",
     "text=0%; minimum=0x45; value=0; alignment=AlignCenter"},

    {"advancedPage", "QWidget", "stackedWidget[1]", ""},
    {"frame", "QFrame", "verticalLayout_5[0]", "minimum=0x200; shape=StyledPanel; shadow=Raised"},
    {"iconLabel", "QLabel", "gridLayout row 0 column 0", "text=程序图标"},
    {"iconLineEdit", "QLineEdit", "gridLayout row 0 column 1", ""},
    {"iconButton", "QPushButton", "gridLayout row 0 column 2", "text=选择"},
    {"label", "QLabel", "gridLayout row 2 column 0", "text=压缩级别"},
    {"cmbCompression", "QComboBox", "gridLayout row 2 columns 1-2", ""},
    {"label_2", "QLabel", "gridLayout row 4 column 0", "text=压缩方法"},
    {"cmbMethod", "QComboBox", "gridLayout row 4 columns 1-2", ""},
    {"label_3", "QLabel", "gridLayout row 5 column 0", "text=字典大小"},
    {"cmbDictSize", "QComboBox", "gridLayout row 5 columns 1-2", ""},
    {"frame_3", "QFrame", "verticalLayout_5[1]", "shape=StyledPanel; shadow=Raised"},
    {"chkCleanup", "QCheckBox", "gridLayout_3 row 2 column 0",
     "text=完成后清理临时文件; minimum=0x30; checked=true"},
    {"chkTemp", "QCheckBox", "gridLayout_3 row 3 column 0",
     "text=解压到临时目录; minimum=0x30; checked=true"},
    {"chkAdmin", "QCheckBox", "gridLayout_3 row 4 column 0", "text=以管理员权限运行; minimum=0x30"},
    {"chkEncrypt", "QCheckBox", "gridLayout_3 row 5 column 0", "text=加密文件内容; minimum=0x30"},
    {"resetButton", "QPushButton", "gridLayout_3 row 6 column 1",
     "text=一键重置; minimum=0x45; maximum=120x16777215"},
};

struct LayoutRow
{
    const char *name;
    const char *className;
    const char *description;
};

// An inner layout without a spacing of its own has that of the layout around it, here 0.
constexpr LayoutRow layoutTable[] = {
    {"verticalLayout", "QVBoxLayout", "on centralwidget; spacing 0; margins 10,10,10,10"},
    {"verticalLayout_7", "QVBoxLayout", "on frameMain; spacing 0; margins 0,0,0,0"},
    {"horizontalLayout_12", "QHBoxLayout", "in verticalLayout_7[0]; spacing 0; margins 0,0,0,0"},
    {"verticalLayout_10", "QVBoxLayout",
     "on frameMenu; spacing 0; margins 0,0,0,0; spacer [3] 20x40 Minimum/Expanding"},
    {"verticalLayout_9", "QVBoxLayout", "in horizontalLayout_12[1]; spacing 0; margins 0,0,0,0"},
    {"horizontalLayout_9", "QHBoxLayout",
     "on headerFrame; spacing 5; margins 10,0,0,0; spacer [2] 40x20 Expanding/Minimum"},
    {"verticalLayout_3", "QVBoxLayout", "on basicPage; spacing default; margins default"},
    {"gridLayout_2", "QGridLayout", "on frame_2; spacing 10/12; margins 0,0,0,0"},
    {"verticalLayout_5", "QVBoxLayout",
     "on advancedPage; spacing default; margins default; spacer [2] 20x40 Minimum/Expanding"},
    {"gridLayout", "QGridLayout", "on frame; spacing 14/1; margins 0,0,0,0"},
    {"gridLayout_3", "QGridLayout", "on frame_3; spacing 0; margins 0,0,0,0"},
};

struct IconRow
{
    const char *button;
    const char *unchecked;
    const char *checked;
};

constexpr IconRow iconTable[] = {
    {"logo", ":/icons/logo.svg", ":/icons/logo.svg"},
    {"basicTabButton", ":/icons/foundation.svg", ":/icons/foundation-hover.svg"},
    {"advancedTabButton", ":/icons/senior.svg", ":/icons/senior-hover.svg"},
    {"menuButton", ":/icons/nav.svg", ":/icons/nav.svg"},
    {"minButton", ":/icons/min.svg", ":/icons/min.svg"},
    {"closeButton", ":/icons/close.svg", ":/icons/close.svg"},
};
