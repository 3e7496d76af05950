# The inner parts alone, each over a store of 13,570 names (Google Benchmark). They compete with nobody.
. benchmarks/common.sh
build inner_parts
"$tools/inner_parts" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
  --benchmark_min_time=0.2 2>"$WORK/log/inner" | grep -E '^(Benchmark|---|.*_(median|stddev))' \
  >"$WORK/results/inner.txt" || fail "the inner parts failed, see $WORK/log/inner"
echo "  done"
