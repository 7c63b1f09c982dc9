; x & -x isolates the lowest bit that is set in x: proved against a search for it bit by bit.
(set-info :smt-lib-version 2.6)
(set-logic QF_BV)

(declare-const x (_ BitVec 16))

; The word whose only bit is bit i of x, or else what a search of the bits above finds.
(define-fun lowest ((i (_ BitVec 16)) (above (_ BitVec 16))) (_ BitVec 16)
  (ite (= ((_ extract 0 0) (bvlshr x i)) #b1) (bvshl #x0001 i) above))

(define-fun searched () (_ BitVec 16)
  (lowest #x0000 (lowest #x0001 (lowest #x0002 (lowest #x0003
  (lowest #x0004 (lowest #x0005 (lowest #x0006 (lowest #x0007
  (lowest #x0008 (lowest #x0009 (lowest #x000a (lowest #x000b
  (lowest #x000c (lowest #x000d (lowest #x000e (lowest #x000f #x0000)))))))))))))))))

(set-info :status unsat)
(assert (distinct searched (bvand x (bvneg x))))
(check-sat)
(exit)
