// The scripts from which mutations start: small ones that reach every command and every theory, and
// those that once made the reader or the printer fail, or grow without bounds.

#ifndef TESTS_MUTATIONS_SEEDS_H
#define TESTS_MUTATIONS_SEEDS_H

#include <string>
#include <vector>

namespace quill::smt2 {

inline std::vector<std::string> seed_scripts() {
  std::vector<std::string> seeds = {
      // names that end with their scope
      "(define-const x Int (! 3 :named x))(reset)",
      "(push 1)(define-fun x () Int (! 3 :named x))(pop 1)(assert (= x 3))",
      "(declare-const x Int)(define-fun p () Bool (! (> x 0) :named n))(push 1)(assert p)(pop 1)"
      "(assert n)(assert (< x 0))(check-sat)",
      "(declare-const p Bool)(declare-const q Bool)(assert (! (and p q) :named a))"
      "(push 1)(assert (! (or p (! q :named b)) :named c))(check-sat-assuming (a b (not c)))"
      "(get-value (a (! p :named d)))(get-unsat-core)(pop 1)(reset-assertions)(assert true)",
      "(set-option :global-declarations true)(push 2)(declare-sort S 1)(declare-fun f ((S Int)) "
      "Int)"
      "(set-option :global-declarations false)(define-sort T (X) (S X))(declare-const s (T Int))"
      "(assert (= (f s) (div 7 0)))(reset-assertions)(assert (= (mod 1 0) 1))(pop 1)(reset)",
      // terms that are larger than their text
      "(assert (distinct 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20))",
      "(declare-const i Int)(assert (= ((_ int2bv 2000) i) ((_ nat2bv 2000) (+ i 1))))",
      "(declare-const b (_ BitVec 100000))(assert (= 5 (sbv_to_int b)))",
      "(declare-const f (_ FloatingPoint 5 1000))(assert (= f (_ +oo 5 1000)))"
      "(assert (= #x1 ((_ fp.to_ubv 4) RNE f)))(assert (= f ((_ to_fp 5 1000) RNE 0.1)))",
      "(define-fun f ((a Int)) Bool (distinct a 1 2 3))"
      "(define-fun g ((a Int)) Bool (and (f a) (f (+ a 1))))"
      "(define-fun h ((a Int)) Bool (and (g a) (g (* a 2))))(assert (h 5))(assert (h 6))",
      "(declare-const b (_ BitVec 8))(assert (= ((_ repeat 1000000000) b) ((_ repeat 1000000000) "
      "b)))"
      "(assert (= ((_ zero_extend 99999999) b) ((_ sign_extend 99999999) b)))",
      "(declare-const x Int)(assert (let ((a (* 99999 99999))) (let ((b (* a a))) "
      "(let ((c (* b b))) (= x (div x c))))))",
      // what the standard leaves open
      "(echo \"a\")(set-logic QF_NIA)(declare-const x Int)(assert (= (div x 0) (mod x 0)))",
      "(push 1)(declare-fun quill!div_by_zero (Int) Int)(assert (= 1 (quill!div_by_zero 1)))(pop 1)"
      "(assert (= (div 1 0) 1))",
      "(declare-const x Real)(assert (= (/ x 0) (to_real (to_int x))))(get-value ((/ 1 0)))",
      "(declare-const f Float16)(declare-const r RoundingMode)(assert (= (fp.to_ieee_bv f) #x0000))"
      "(check-sat)(get-value ((fp.to_ieee_bv (fp.add r f f)) ((_ fp.to_ubv 8) r f)))",
      // the theories
      "(set-logic QF_NRA)(declare-const x Real)(assert (> (ite (<= 0.0 x) x (- x)) (abs (- x))))",
      "(declare-const a (Array Int Real))(assert (= a (store ((as const (Array Int Real)) (- 0.5)) "
      "3 "
      "(/ 1 3))))(assert (= (select a 2) 0.125))",
      "(declare-const a (Array Bool (Array Int Bool)))(assert (select (select a true) 3))"
      "(assert (= a (store a false ((as const (Array Int Bool)) true))))",
      "(set-logic QF_BV)(declare-const b (_ BitVec 8))(declare-const c (_ BitVec 8))"
      "(assert (= ((_ extract 6 2) (bvadd b c #xff)) ((_ rotate_left 3) #b10101)))"
      "(assert (bvult (concat b c) (bvsmod (concat c b) #x1234)))(assert (bvsmulo b c))",
      "(set-logic QF_FP)(declare-const f Float32)(define-fun one () Float32 ((_ to_fp 8 24) RNE 1))"
      "(assert (fp.lt (fp.add RNE f one) (fp.sqrt RTZ (fp #b0 #x7f #b00000000000000000000001))))"
      "(assert (not (fp.isNaN ((_ to_fp 8 24) RTP #x1234))))",
      "(declare-sort S 0)(declare-sort L 1)(define-sort P (X Y) (Array X (L Y)))"
      "(declare-fun |a b| (S (P Int S)) Bool)(declare-const s S)(declare-const p (P Int S))"
      "(assert (|a b| s p))",
      "(declare-const i Int)(assert (and (=> (< i 3 4) (xor (= i 1 2) (distinct i 5))) "
      "(ite (>= i 0) ((_ divisible 3) i) (is_int (/ (to_real i) 2)))))",
      // all other commands, and what is not well-formed
      "(set-info :source |a\nb|)(set-option :produce-models true)(get-info :name)"
      "(get-option :produce-models)(echo \"say \"\"so\"\"\")(check-sat)(get-model)(get-assertions)"
      "(get-assignment)(get-proof)(get-unsat-assumptions)(exit)(frobnicate)",
      "\xEF\xBB\xBF(declare-const extract Bool)(declare-const NaN Bool)(assert (or extract NaN))",
      "(declare-const x (BitVec 8))(assert (= (extract 3 0 x) (_ extract 3 0 x)))",
      "(declare-const p Bool)(assert (implies p (iff p -3))\n(check-sat)",
      "(assert (let ((x 1) (y 2)) (let ((x y) (y x)) (! (= x y) :pattern (x y) :named z))))",
  };
  std::string chain = "(declare-const x Int)(define-fun d0 () Int x)";
  std::string distinct = "(assert (distinct";
  for (int i = 1; i <= 60; ++i) {
    const std::string n = std::to_string(i);
    chain += "(define-fun d" + n + " () Int (+ d" + std::to_string(i - 1) + " " + n +
             "))(assert (> d" + n + " 0))";
  }
  for (int i = 0; i < 150; ++i) distinct += " " + std::to_string(i);
  seeds.push_back(chain);
  seeds.push_back(distinct + "))");
  return seeds;
}

}  // namespace quill::smt2

#endif
