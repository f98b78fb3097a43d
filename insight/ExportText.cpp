// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The exports that are text: CSV and JSON lines.

#include <nlohmann/json.hpp>
#include <ostream>

#include "insight/Csv.h"
#include "insight/Difference.h"
#include "insight/Export.h"

namespace logbook::insight {
namespace {

using Json = nlohmann::ordered_json;

void WriteTo(std::ostream& out, const std::string& text) {
  out << text;
  if (!out) throw ExportError("the output cannot be written");
}

// What the text exports share.
class TextExporter : public Exporter {
 public:
  TextExporter(std::ostream& out, const Catalogues& catalogues, ExportShape shape, RootColumn root)
      : out_(out), rows_(catalogues), shape_(shape), root_(root) {}

  void Add(const LogReading& reading) override {
    shape_ == ExportShape::kLong ? AddLong(reading) : AddWide(reading);
  }

  void Finish() override {
    out_.flush();
    if (!out_) throw ExportError("the output cannot be written");
  }

 protected:
  virtual void AddLong(const LogReading& reading) = 0;
  virtual void AddWide(const LogReading& reading) = 0;

  bool WithRoot() const { return root_ == RootColumn::kWith; }

  std::ostream& out_;
  ExportRows rows_;
  ExportShape shape_;
  RootColumn root_;
};

class CsvExporter : public TextExporter {
 public:
  CsvExporter(std::ostream& out, const Catalogues& catalogues, ExportShape shape, RootColumn root)
      : TextExporter(out, catalogues, shape, root) {
    WriteTo(out_, shape_ == ExportShape::kLong ? LongHeader() : WideHeader());
  }

 protected:
  void AddLong(const LogReading& reading) override {
    const std::string date = ExportDate(reading);
    CsvLine line;
    std::string lines;
    rows_.ForEach(reading, [&](const ExportCell& cell) {
      if (WithRoot()) line.AddText(reading.Identity.Root);
      line.AddText(reading.Identity.Folder).AddText(date).Add(cell.catalogue);
      line.Add(std::to_string(cell.row)).AddText(cell.label).Add(cell.unit).Add(cell.section);
      line.Add(cell.value ? ExactNumber(*cell.value) : "");
      cell.foreign ? line.AddText(cell.text) : line.Add(cell.text);
      lines += line.Add(cell.state).Take();
    });
    WriteTo(out_, lines);
  }

  void AddWide(const LogReading& reading) override {
    CsvLine line;
    if (WithRoot()) line.AddText(reading.Identity.Root);
    line.AddText(reading.Identity.Folder).AddText(ExportDate(reading));
    rows_.ForEach(reading, [&](const ExportCell& cell) {
      // A bit is a word to a reader of columns, and so is what has no value.
      const bool bit = cell.catalogue == "bin" || cell.catalogue == "bout";
      if (cell.value && !bit) {
        line.AddNumber(*cell.value);
      } else {
        cell.foreign ? line.AddText(cell.text) : line.Add(cell.text);
      }
    });
    WriteTo(out_, line.Take());
  }

 private:
  std::string LongHeader() const {
    return std::string(WithRoot() ? "root," : "") +
           "log,date,catalogue,row,label,unit,section,value,text,state\r\n";
  }

  std::string WideHeader() const {
    CsvLine line;
    if (WithRoot()) line.Add("root");
    line.Add("log").Add("date").Add("comment").Add("automatic");
    for (const std::string& tick : rows_.TickLabels()) line.Add(tick);
    for (const OptionKey& option : kOptionKeys) line.Add(option.Key);
    for (int place = 0; place < kAllRows; ++place) {
      const RowId id = RowAtPlace(place);
      line.Add(std::string(InfoOf(id.Which).Name) + ":" + rows_.TitleAt(place));
    }
    return line.Take();
  }
};

class JsonLinesExporter : public TextExporter {
 public:
  using TextExporter::TextExporter;

 protected:
  void AddLong(const LogReading& reading) override {
    const std::string date = ExportDate(reading);
    std::string lines;
    rows_.ForEach(reading, [&](const ExportCell& cell) {
      Json json = Head(reading);
      json["catalogue"] = cell.catalogue;
      json["row"] = cell.row;
      json["label"] = cell.label;
      json["unit"] = cell.unit;
      json["section"] = cell.section;
      json["value"] = cell.value ? Json(*cell.value) : Json(nullptr);
      json["text"] = cell.text;
      json["state"] = cell.state;
      lines += Line(json);
    });
    WriteTo(out_, lines);
  }

  void AddWide(const LogReading& reading) override {
    Json json = Head(reading);
    json["date_text"] = reading.Identity.Date;
    json["fingerprint"] = FingerprintText(reading.Identity);
    json["comment"] = reading.HasComment ? Json(reading.Comment) : Json(nullptr);
    json["automatic"] = reading.Automatic;
    Json ticks = Json::array();
    for (std::size_t i = 0; i < reading.Ticks.size(); ++i) {
      if (reading.Ticks[i]) ticks.push_back(rows_.TickLabels()[i]);
    }
    json["ticks"] = std::move(ticks);
    for (const OptionKey& option : kOptionKeys) {
      json["options"][std::string(option.Key)] = reading.Options.*option.Member;
    }
    AddValues(reading, json);
    WriteTo(out_, Line(json));
  }

 private:
  Json Head(const LogReading& reading) const {
    Json json;
    if (WithRoot()) json["root"] = reading.Identity.Root;
    json["log"] = reading.Identity.Folder;
    json["date"] = ExportDate(reading);
    return json;
  }

  // Values by "catalogue:row"; for those without one the states instead.
  void AddValues(const LogReading& reading, Json& json) const {
    Json values = Json::object();
    Json states = Json::object();
    for (int place = 0; place < kAllRows; ++place) {
      const RowValue& value = reading.Values[static_cast<std::size_t>(place)];
      const std::string name = NameOf(RowAtPlace(place));
      if (value.State != ValueState::kOk) {
        states[name] = NameOf(value.State);
      } else if (rows_.InfoAt(place).Kind == RowKind::kText) {
        values[name] = value.Text;
      } else {
        values[name] = value.Number;
      }
    }
    json["values"] = std::move(values);
    json["states"] = std::move(states);
  }

  static std::string Line(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
  }
};

}  // namespace

std::unique_ptr<Exporter> MakeCsvExporter(std::ostream& out, const Catalogues& catalogues,
                                          ExportShape shape, RootColumn root) {
  return std::make_unique<CsvExporter>(out, catalogues, shape, root);
}

std::unique_ptr<Exporter> MakeJsonLinesExporter(std::ostream& out, const Catalogues& catalogues,
                                                ExportShape shape, RootColumn root) {
  return std::make_unique<JsonLinesExporter>(out, catalogues, shape, root);
}

}  // namespace logbook::insight
