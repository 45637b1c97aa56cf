#pragma once

#include <span>
#include <vector>

#include "characterise/FanResult.h"

/// Least squares. Pure functions.
namespace zth::characterise {

struct Datum {
  double x = 0;
  double y = 0;
  double sigma = 0;  ///< standard uncertainty of y; 0: not known, all alike
};

double Mean(std::span<const double> values);
/// The standard deviation of a sample; 0 for fewer than two values.
double Deviation(std::span<const double> values);
/// The same from the differences of neighbours, which a slow change hardly affects.
double Scatter(std::span<const double> values);
double Median(std::vector<double> values);

struct LineFit {
  bool good = false;  ///< at least two values of x
  Estimate slope;
  Estimate intercept;
};

/// y = intercept + slope * x. The uncertainties come from the residuals, or from `sigma` if that gives larger ones. Two
/// points without `sigma` give an uncertainty of 0.
LineFit FitLine(std::span<const Datum> data);

struct StepFit {
  bool good = false;
  Estimate before;        ///< where the first stretch leads
  Estimate after;         ///< where the second stretch leads
  Estimate timeConstant;  ///< of both, in units of x
  double residual = 0;    ///< root of the mean square
};

/// Two stretches of a first-order lag with the same time constant, each y = end + rest * exp(-x / timeConstant). Good
/// if the minimum lies between `least` and `most`.
StepFit FitStep(std::span<const Datum> before, std::span<const Datum> after, double least, double most);

}  // namespace zth::characterise
