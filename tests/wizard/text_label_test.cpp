// The arithmetic of the one-line texts, over a drawing surface with texts of any wanted width.
#include "wizard/text_label.h"

#include <gtest/gtest.h>

#include <memory>

// Behind the others: the window system's header has macros of common words.
#include <FL/Fl_Box.H>
#include <FL/Fl_Device.H>
#include <FL/Fl_Group.H>
#include <FL/fl_draw.H>

namespace {

class MeasuredDriver : public Fl_Graphics_Driver {
 public:
  using Fl_Graphics_Driver::font;
  using Fl_Graphics_Driver::width;
  void font(Fl_Font face, Fl_Fontsize size) override {
    Fl_Graphics_Driver::font(face, size);
    asked_face = face;
    asked_size = size;
  }
  double width(const char*, int) override { return text_width; }
  int height() override { return 19; }
  int descent() override { return 4; }

  double text_width = 0;
  int asked_face = -1;
  int asked_size = -1;
};

class TextLabel : public ::testing::Test {
 protected:
  TextLabel() : before_(fl_graphics_driver) {
    fl_graphics_driver = &driver_;
    Fl_Group::current(nullptr);
  }
  ~TextLabel() override { fl_graphics_driver = before_; }

  Fl_Box* Make(double width, int centred) {
    driver_.text_width = width;
    box_.reset(MakeTextLabel(323, 48, FL_HELVETICA_BOLD, 17, centred, text_));
    return box_.get();
  }

  const char* text_ = "some text";
  MeasuredDriver driver_;
  std::unique_ptr<Fl_Box> box_;

 private:
  Fl_Graphics_Driver* before_;
};

TEST_F(TextLabel, LeftAlignedKeepsItsXAndIsOneWiderThanTheText) {
  const Fl_Box* box = Make(100, 0);
  EXPECT_EQ(box->x(), 323);
  EXPECT_EQ(box->y(), 48);
  EXPECT_EQ(box->w(), 101);
  EXPECT_EQ(box->h(), 23);
  EXPECT_EQ(box->align(), static_cast<Fl_Align>(FL_ALIGN_INSIDE | FL_ALIGN_LEFT));
}

TEST_F(TextLabel, WidthIsRoundedUp) {
  EXPECT_EQ(Make(100.01, 0)->w(), 102);
}

TEST_F(TextLabel, CentredMovesLeftByHalfTheWidthRoundedUp) {
  const Fl_Box* box = Make(101, 1);
  EXPECT_EQ(box->x(), 323 - 51);
  EXPECT_EQ(box->w(), 102);
  EXPECT_EQ(box->align(), static_cast<Fl_Align>(FL_ALIGN_CENTER));
}

TEST_F(TextLabel, HalfIsFormedInSinglePrecision) {
  const Fl_Box* box = Make(100.000000001, 1);
  EXPECT_EQ(box->x(), 323 - 50);  // 51 in double precision
  EXPECT_EQ(box->w(), 102);
}

TEST_F(TextLabel, FontAndBoxAreThoseAskedForAndTheTextIsNotCopied) {
  const Fl_Box* box = Make(10, 1);
  EXPECT_EQ(driver_.asked_face, FL_HELVETICA_BOLD);
  EXPECT_EQ(driver_.asked_size, 17);
  EXPECT_EQ(box->labelfont(), FL_HELVETICA_BOLD);
  EXPECT_EQ(box->labelsize(), 17);
  EXPECT_EQ(box->box(), FL_NO_BOX);
  EXPECT_EQ(box->label(), text_);
}

}  // namespace
