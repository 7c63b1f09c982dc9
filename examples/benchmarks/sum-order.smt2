; The sum of three floating-point numbers depends on the order of the additions, even when all of
; them are ordinary numbers between 1 and 2^24.
(set-info :smt-lib-version 2.6)
(set-logic QF_FP)

(declare-const a (_ FloatingPoint 8 24))
(declare-const b (_ FloatingPoint 8 24))
(declare-const c (_ FloatingPoint 8 24))

(define-fun ordinary ((x (_ FloatingPoint 8 24))) Bool
  (and (fp.leq ((_ to_fp 8 24) RNE 1.0) x) (fp.leq x ((_ to_fp 8 24) RNE 16777216.0))))
(define-fun sum ((x (_ FloatingPoint 8 24)) (y (_ FloatingPoint 8 24))) (_ FloatingPoint 8 24)
  (fp.add RNE x y))

(assert (and (ordinary a) (ordinary b) (ordinary c)))

; Two additions in either order: they may differ.
(push 1)
(set-info :status sat)
(assert (not (fp.eq (sum (sum a b) c) (sum a (sum b c)))))
(check-sat)
(pop 1)

; One addition: its operands may change places.
(push 1)
(set-info :status unsat)
(assert (not (fp.eq (sum a b) (sum b a))))
(check-sat)
(pop 1)
(exit)
