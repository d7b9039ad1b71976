// The keys of a BOM table in a drawing: anchors, links between cells and the values of the type cell.
// Each link is a 1005 item holding the target cell's handle; the target links back under the paired key.
#pragma once

// Anchors: a label cell makes a "Symb2" row, a type cell without a label a "Symb1" row.
inline constexpr char16_t QXBOM_LABEL[] = u"QXBOM_LABEL";
inline constexpr char16_t QXBOM_TYPE[] = u"QXBOM_TYPE";

// From a label anchor, forward and back.
inline constexpr char16_t QXBOM_LABEL_NOHANDLE[] = u"QXBOM_LABEL_NOHANDLE";
inline constexpr char16_t QXBOM_NO_LABELHANDLE[] = u"QXBOM_NO_LABELHANDLE";
inline constexpr char16_t QXBOM_LABEL_TYPEHANDLE[] = u"QXBOM_LABEL_TYPEHANDLE";
inline constexpr char16_t QXBOM_TYPE_LABELHANDLE[] = u"QXBOM_TYPE_LABELHANDLE";
inline constexpr char16_t QXBOM_LABEL_NAMEHANDLE[] = u"QXBOM_LABEL_NAMEHANDLE";
inline constexpr char16_t QXBOM_NAME_LABELHANDLE[] = u"QXBOM_NAME_LABELHANDLE";
inline constexpr char16_t QXBOM_LABEL_COUNTHANDLE[] = u"QXBOM_LABEL_COUNTHANDLE";
inline constexpr char16_t QXBOM_COUNT_LABELHANDLE[] = u"QXBOM_COUNT_LABELHANDLE";
inline constexpr char16_t QXBOM_LABEL_NOTEHANDLE[] = u"QXBOM_LABEL_NOTEHANDLE";
inline constexpr char16_t QXBOM_NOTE_LABELHANDLE[] = u"QXBOM_NOTE_LABELHANDLE";
inline constexpr char16_t QXBOM_LABEL_LOCATIONHANDLE[] = u"QXBOM_LABEL_LOCATIONHANDLE";
inline constexpr char16_t QXBOM_LOCATION_LABELHANDLE[] = u"QXBOM_LOCATION_LABELHANDLE";

// From a type anchor, forward and back. The link to the label pairs with the label's link to the type.
inline constexpr char16_t QXBOM_TYPE_NAMEHANDLE[] = u"QXBOM_TYPE_NAMEHANDLE";
inline constexpr char16_t QXBOM_NAME_TYPEHANDLE[] = u"QXBOM_NAME_TYPEHANDLE";
inline constexpr char16_t QXBOM_TYPE_COUNTHANDLE[] = u"QXBOM_TYPE_COUNTHANDLE";
inline constexpr char16_t QXBOM_COUNT_TYPEHANDLE[] = u"QXBOM_COUNT_TYPEHANDLE";
inline constexpr char16_t QXBOM_TYPE_NOTEHANDLE[] = u"QXBOM_TYPE_NOTEHANDLE";
inline constexpr char16_t QXBOM_NOTE_TYPEHANDLE[] = u"QXBOM_NOTE_TYPEHANDLE";

// Values of the type cell, first 1000 item.
inline constexpr char16_t QXBOM_CODE[] = u"QXBOM_CODE";
inline constexpr char16_t QXBOM_PRICE[] = u"QXBOM_PRICE";
inline constexpr char16_t QXBOM_DEVICETYPE[] = u"QXBOM_DEVICETYPE";

// Row kinds.
inline constexpr char16_t QXBOM_KIND_SYMB1[] = u"Symb1";
inline constexpr char16_t QXBOM_KIND_SYMB2[] = u"Symb2";
